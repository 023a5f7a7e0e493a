#include "CompletionScript.h"

#include <string_view>

#include "BashCompletion.h"
#include "CompletionTable.h"
#include "FishCompletion.h"
#include "ZshCompletion.h"

// Each script is the table of all words, in a variable of the shell, and one function that reads
// the words before the cursor with it: which command they name, whether an option needs its value
// next, and how many positional words there are. Then it offers what the table has for that
// position.
//
// Names come from the program's JSON, whose fields keep their names and their order. A name with a
// backslash, or with a character that JSON escapes in any way but as one backslash and one
// character, is not offered. Neither are the hidden default projects.
//
// Names may have been imported from somewhere, and may be written to do harm. So no typed text is
// run, the program is the one found in PATH, and each name is quoted for the place where it is
// inserted. A name that can't be quoted there, or would be read as an option, is not offered.

namespace Kestry {

namespace {

/// What bash and zsh understand in the same way.
const std::string_view namesForBashAndZsh = R"script(
# Prints the names of the clients or the projects, one on a line.
_kestryctl_names()
{
    local pattern='"name":"([^"\\]|\\["/])+"'
    if [[ $1 == project ]]; then
        pattern+=',"hourlyRateCents":-?[0-9]+,"rateIsKnown":[a-z]+,"isClientDefault":false'
    fi
    command kestryctl "${folder[@]}" --json "$1" list 2>/dev/null </dev/null \
        | grep -oE "$pattern" | sed -E 's,^"name":"(([^"\\]|\\["/])+)".*$,\1,; s,\\(["/]),\1,g'
}
)script";

std::string replaced(std::string text, std::string_view what, std::string_view by)
{
    for (std::size_t found = text.find(what); found != std::string::npos;
         found = text.find(what, found + by.size())) {
        text.replace(found, what.size(), by);
    }
    return text;
}

/// A text in single quotes as bash and zsh read it.
std::string quotedForBash(const std::string& text)
{
    return "'" + replaced(text, "'", "'\\''") + "'";
}

std::string quotedForFish(const std::string& text)
{
    return "'" + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
}

} // namespace

std::string completionScript(const CLI::App& root, Shell shell)
{
    std::string table = completionTable(root);
    table.pop_back();
    switch (shell) {
    case Shell::bash:
        return "# Completes kestryctl in bash: source <(kestryctl completion bash)\n\n"
               "_kestryctl_table="
            + quotedForBash(table) + "\n" + std::string(namesForBashAndZsh)
            + std::string(bashCompletion);
    case Shell::zsh:
        return "#compdef kestryctl\n"
               "# Completes kestryctl in zsh: source <(kestryctl completion zsh) after compinit,\n"
               "# or keep it as _kestryctl in a folder of fpath.\n\n"
               "_kestryctl_table="
            + quotedForBash(table) + "\n" + std::string(namesForBashAndZsh)
            + std::string(zshCompletion);
    case Shell::fish:
        return "# Completes kestryctl in fish: kestryctl completion fish | source\n\n"
               "set -g __kestryctl_table (string split \\n -- "
            + quotedForFish(table) + ")\n" + std::string(fishCompletion);
    }
    return {};
}

} // namespace Kestry
