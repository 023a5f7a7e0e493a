// Reads a ledger from standard input and writes its sessions to standard output, as the file that
// the application exports.

#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>

#include "CsvExport.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"

int main()
{
    const std::string json(std::istreambuf_iterator<char>(std::cin), {});
    const std::string csv = KestryCore::exportCSV(KestryCore::decodeLedger(json));
    return std::fwrite(csv.data(), 1, csv.size(), stdout) == csv.size() ? 0 : 1;
}
