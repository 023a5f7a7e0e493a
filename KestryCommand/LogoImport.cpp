#include "LogoImport.h"

#include "ClientLogo.h"
#include "HelperProgram.h"
#include "LedgerError.h"
#include "PictureFile.h"

namespace Kestry {

std::string importedLogo(
    std::string_view picture, const std::string& program, const std::stop_token& stop)
{
    KestryCore::requirePictureSize(picture.size());
    std::string answer = helperOutput(program, picture, {.stop = stop});
    if (answer.starts_with("\x89PNG")) {
        KestryCore::validateClientLogo(answer);
        return answer;
    }
    // A decoder that crashed on the file has left no words.
    throw KestryCore::LedgerError(answer.empty() ? KestryCore::unreadablePicture : answer);
}

} // namespace Kestry
