#include "CompletionScript.h"

#include <string_view>

#include "CompletionTable.h"

// Each script is the table of all words, as a shell's variable, and one function that walks over
// the words before the cursor with it: which command they name, whether an option awaits its
// value, and how many words told by their place there are. Then it offers what the table has for
// that point.
//
// Names come from the program's JSON, whose fields keep their names and their order. A name with
// a letter that JSON writes in more than one backslash and one letter, or a backslash itself, is
// left out rather than offered wrongly. The hidden default projects are left out as well.
//
// Names may come from elsewhere, and be written so as to do harm. So nothing that was typed is run,
// the program is the one that the path leads to, and each name is quoted for the place where it is
// put: what cannot be quoted there is left out, and so is what would be taken for an option.

namespace Kestry {

namespace {

constexpr std::string_view bashScript = R"script(
# Reads the line up to the cursor as the shell does: sets typed to the words before the one at the
# cursor, unclear to those among them that the shell would still change, by their numbers, current
# to the word at the cursor and state to how it is quoted there. Fails where that cannot be told.
_kestryctl_read()
{
    local line=${COMP_LINE:0:COMP_POINT} index character next begun=
    # Byte by byte, which is quicker.
    local LC_ALL=C
    typed=() unclear=() current= state=bare
    for ((index = 0; index < ${#line}; index++)); do
        character=${line:index:1}
        next=${line:index+1:1}
        case $state$character in
            bare[[:space:]])
                [[ -n $begun ]] && typed+=("$current")
                begun= current=
                continue
                ;;
            bare\' | bare\")
                # Other ways of quoting begin with a dollar sign.
                [[ $index -gt 0 && ${line:index-1:1} == '$' ]] && return 1
                [[ $character == \' ]] && state=single || state=double
                ;;
            single\' | double\") state=bare ;;
            # The last letter of all escapes what is still to come.
            bare\\ | double\\)
                if [[ -n $next && ($state == bare || $next == [\\\"\$\`]) ]]; then
                    current+=$next
                    ((index += 1))
                elif [[ -n $next ]]; then
                    current+=$character
                fi
                ;;
            bare\~)
                if [[ -z $begun && $next == / ]]; then
                    current=$HOME
                else
                    unclear[${#typed[@]}]=1
                    current+=$character
                fi
                ;;
            bare[\$\`\*\?\[\{\!\;\&\|\(\)\<\>] | double[\$\`\!])
                unclear[${#typed[@]}]=1
                current+=$character
                ;;
            *) current+=$character ;;
        esac
        begun=1
    done
}

# Sets quoted to $1 as it is to be written in state; fails where it cannot be.
_kestryctl_quote()
{
    local LC_ALL=C
    local index character
    quoted=
    for ((index = 0; index < ${#1}; index++)); do
        character=${1:index:1}
        case $state$character in
            # The shell looks for old command lines between double quotes too.
            *[[:cntrl:]] | single\' | double\!) return 1 ;;
            bare[[:alnum:]_./,+%@-] | single*) ;;
            bare[[:print:]] | double[\\\"\$\`]) quoted+=\\ ;;
        esac
        quoted+=$character
    done
}

# Sets value to what to offer for option $2 of command $1; fails when it takes no value there.
_kestryctl_value()
{
    local at kind word about
    while IFS='|' read -r at kind word value about; do
        if [[ $kind == option && $word == "$2" && (-z $at || $at == "$1") ]]; then
            return 0
        fi
    done <<<"$_kestryctl_table"
    return 1
}

# Sets words to those of kind $2 that may stand at $1.
_kestryctl_words()
{
    local at kind word value about
    while IFS='|' read -r at kind word value about; do
        if [[ $at == "$1" && $kind == $2 ]]; then
            words+=("$word")
        fi
    done <<<"$_kestryctl_table"
}

# Sets value to what to offer for word number $2 at command $1.
_kestryctl_place()
{
    local at kind word about
    while IFS='|' read -r at kind word value about; do
        if [[ $at == "$1" && $kind == place && $word == "$2" ]]; then
            return 0
        fi
    done <<<"$_kestryctl_table"
    value=
}

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

# Sets words to what can be offered for a value of kind $1.
_kestryctl_offer()
{
    local name names=()
    case $1 in
        '='*) IFS=, read -r -a words <<<"${1#=}" ;;
        client | project)
            [[ -z $hidden ]] && mapfile -t names < <(_kestryctl_names "$1")
            for name in "${names[@]}"; do
                [[ $name != -* || -n $dashes ]] && words+=("$name")
            done
            ;;
        file) compopt -o default 2>/dev/null ;;
        directory) compopt -o dirnames 2>/dev/null ;;
    esac
}

# $2 is the end of the word at the cursor that the shell replaces, as it was typed.
_kestryctl()
{
    local typed unclear current state quoted value index word
    local at= place=1 awaited= ended= dashes= hidden= folder=() words=()
    COMPREPLY=()
    _kestryctl_read || return
    for ((index = 1; index < ${#typed[@]}; index++)); do
        word=${typed[index]}
        if [[ -z $awaited$ended && $word == --*=* ]]; then
            awaited=${word%%=*}
            word=${word#*=}
        fi
        if [[ -n $awaited ]]; then
            if [[ $awaited == --data-directory ]]; then
                # What the shell would still change is not looked into.
                hidden=${unclear[index]}
                folder=(--data-directory "$word")
            fi
            awaited=
        elif [[ -z $ended && $word == -- ]]; then
            ended=1 dashes=1
        elif [[ -z $ended && $word == -?* ]]; then
            _kestryctl_value "$at" "$word" && awaited=$word
        else
            words=()
            _kestryctl_words "$at" command
            if [[ $'\n'$(printf '%s\n' "${words[@]}")$'\n' == *$'\n'"$word"$'\n'* ]]; then
                at+=${at:+ }$word
            else
                ((place += 1))
            fi
        fi
    done

    words=()
    if [[ -z $awaited$ended && $current == --*=* ]]; then
        awaited=${current%%=*}
        current=${current#*=}
        dashes=1
    fi
    if [[ -n $awaited ]]; then
        value=
        _kestryctl_value "$at" "$awaited" && _kestryctl_offer "$value"
    elif [[ -z $ended && $current == -* ]]; then
        _kestryctl_words "$at" '@(option|flag)'
        [[ -n $at ]] && _kestryctl_words '' '@(option|flag)'
    else
        _kestryctl_words "$at" command
        if ((${#words[@]} == 0)); then
            _kestryctl_place "$at" "$place"
            _kestryctl_offer "$value"
        fi
    fi

    # What was typed stays as it was typed; only what follows is put in.
    [[ -n ${unclear[${#typed[@]}]} ]] && return
    local replaced=$2
    [[ $state != single && $replaced =~ (^|[^\\])(\\\\)*\\$ ]] && replaced=${replaced%\\}
    for word in "${words[@]}"; do
        if [[ $word == "$current"* ]] && _kestryctl_quote "${word#"$current"}"; then
            COMPREPLY+=("$replaced$quoted")
        fi
    done
    # The shell takes a quotation mark at the end for the closing one.
    if [[ ${#COMPREPLY[@]} -eq 1 && $state == double && ${COMPREPLY[0]} == *\" ]]; then
        COMPREPLY[0]+=\"
    fi
}

complete -F _kestryctl kestryctl
)script";

constexpr std::string_view zshScript = R"script(
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

# Offers what there is for a value of kind $1.
_kestryctl_offer()
{
    local -a names
    case $1 in
        '='*)
            names=(${(s:,:)1#=})
            compadd -a names
            ;;
        client | project)
            names=("${(@f)$(_kestryctl_names $1)}")
            names=(${names:#})
            [[ -n $dashes ]] || names=(${names:#-*})
            compadd -a names
            ;;
        file) _files ;;
        directory) _files -/ ;;
    esac
}

_kestryctl()
{
    local at= awaited= ended= dashes= index word line
    integer place=1
    # The shell has arrays of its own called commands and options.
    local -a folder fields nextCommands nextOptions
    local -A optionValues placeValues
    # Reads what the table has for the command in at.
    _kestryctl_read()
    {
        nextCommands=() nextOptions=() optionValues=() placeValues=()
        for line in "${(@f)_kestryctl_table}"; do
            fields=("${(@s:|:)line}")
            if [[ $fields[2] == (option|flag) && ( -z $fields[1] || $fields[1] == $at ) ]]; then
                nextOptions+=("${fields[3]}:${fields[5]}")
                [[ $fields[2] == option ]] && optionValues[${fields[3]}]=":${fields[4]}"
            elif [[ $fields[1] == $at && $fields[2] == command ]]; then
                nextCommands+=("${fields[3]}:${fields[5]}")
            elif [[ $fields[1] == $at && $fields[2] == place ]]; then
                placeValues[${fields[3]}]=$fields[4]
            fi
        done
    }
    _kestryctl_read
    for ((index = 2; index < CURRENT; index++)); do
        word=${(Q)words[index]}
        if [[ -z $awaited$ended && $word == --*=* ]]; then
            awaited=${word%%=*}
            word=${word#*=}
        fi
        if [[ -n $awaited ]]; then
            if [[ $awaited == --data-directory ]]; then
                folder=(--data-directory "${word/#\~\//$HOME/}")
            fi
            awaited=
        elif [[ -z $ended && $word == -- ]]; then
            ended=1 dashes=1
        elif [[ -z $ended && $word == -?* ]]; then
            [[ -n ${optionValues[$word]} ]] && awaited=$word
        elif [[ -n ${nextCommands[(r)${(b)word}:*]} ]]; then
            at+=${at:+ }$word
            _kestryctl_read
        else
            ((place += 1))
        fi
    done

    if [[ -z $awaited$ended && $words[CURRENT] == --*=* ]]; then
        awaited=${words[CURRENT]%%=*}
        dashes=1
        compset -P '*='
    fi
    if [[ -n $awaited ]]; then
        _kestryctl_offer "${optionValues[$awaited]#:}"
    elif [[ -z $ended && $words[CURRENT] == -* ]]; then
        _describe -o 'option' nextOptions
    elif (($#nextCommands)); then
        _describe 'command' nextCommands
    else
        _kestryctl_offer "${placeValues[$place]}"
    fi
}

# Called at once where the shell has loaded this file in order to complete.
if [[ $funcstack[1] == _kestryctl ]]; then
    _kestryctl
else
    compdef _kestryctl kestryctl
fi
)script";

constexpr std::string_view fishScript = R"script(
# Prints the names of the clients or the projects, one on a line; the rest are options.
function __kestryctl_names
    set -l pattern '"name":"([^"\\\\]|\\\\["/])+"'
    if test $argv[1] = project
        set pattern $pattern',"hourlyRateCents":-?[0-9]+,"rateIsKnown":[a-z]+,"isClientDefault":false'
    end
    command kestryctl $argv[2..-1] --json $argv[1] list 2>/dev/null </dev/null \
        | grep -oE $pattern | sed -E 's,^"name":"(([^"\\\\]|\\\\["/])+)".*$,\1,; s,\\\\(["/]),\1,g'
end

# Prints what there is for a value of kind $argv[1], after $argv[2], where $argv[3] stands; names
# that begin with a hyphen only where $argv[4] says so. The rest are options.
function __kestryctl_offer
    switch $argv[1]
        case '=*'
            for word in (string split , -- (string sub -s 2 -- $argv[1]))
                printf '%s\n' $argv[2]$word
            end
        case client project
            for name in (__kestryctl_names $argv[1] $argv[5..-1])
                if test -z "$argv[4]"; and string match -q -- '-*' $name
                    continue
                end
                # The shell quotes what it puts in, but for a tilde at the beginning.
                if test -z "$argv[2]"; and string match -q -- '~*' $name
                    and not string match -qr -- '^["\']' "$argv[3]"
                    continue
                end
                printf '%s\n' $argv[2]$name
            end
        case file
            __fish_complete_path $argv[2]$argv[3]
        case directory
            __fish_complete_directories $argv[2]$argv[3]
    end
end

# Prints the words of the kinds $argv[2..-1] that may stand at $argv[1], with what they are.
function __kestryctl_words
    for line in $__kestryctl_table
        set -l fields (string split '|' -- $line)
        if test "$fields[1]" = "$argv[1]"; and contains -- $fields[2] $argv[2..-1]
            printf '%s\t%s\n' $fields[3] $fields[5]
        end
    end
end

# Prints what to offer for option $argv[2] of command $argv[1]; fails when it takes no value there.
function __kestryctl_value
    for line in $__kestryctl_table
        set -l fields (string split '|' -- $line)
        if test $fields[2] = option; and test $fields[3] = $argv[2]
            if test -z "$fields[1]"; or test "$fields[1]" = "$argv[1]"
                printf '%s\n' $fields[4]
                return 0
            end
        end
    end
    return 1
end

function __kestryctl_complete
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l folder
    set -l at ''
    set -l place 1
    set -l awaited ''
    set -l ended ''
    for word in $words[2..-1]
        if test -z "$awaited$ended"; and string match -q -- '--*=*' $word
            set awaited (string replace -r '=.*' '' -- $word)
            set word (string replace -r '^[^=]*=' '' -- $word)
        end
        if test -n "$awaited"
            if test $awaited = --data-directory
                set folder --data-directory (string replace -r '^~/' $HOME/ -- $word)
            end
            set awaited ''
        else if test -z "$ended"; and test "$word" = --
            set ended 1
        else if test -z "$ended"; and string match -q -- '-?*' $word
            if __kestryctl_value "$at" $word >/dev/null
                set awaited $word
            end
        else if __kestryctl_words "$at" command | string match -q -- $word\t'*'
            set at (string trim -- "$at $word")
        else
            set place (math $place + 1)
        end
    end

    if test -z "$awaited$ended"; and string match -q -- '--*=*' $current
        set awaited (string replace -r '=.*' '' -- $current)
        set -l value (__kestryctl_value "$at" $awaited)
        set -l typed (string replace -r '^[^=]*=' '' -- $current)
        __kestryctl_offer "$value" $awaited= "$typed" 1 $folder
    else if test -n "$awaited"
        set -l value (__kestryctl_value "$at" $awaited)
        __kestryctl_offer "$value" '' "$current" "$ended" $folder
    else if test -z "$ended"; and string match -q -- '-*' $current
        __kestryctl_words "$at" option flag
        if test -n "$at"
            __kestryctl_words '' option flag
        end
    else if string match -q -- "$at|command|*" $__kestryctl_table
        __kestryctl_words "$at" command
    else
        for line in $__kestryctl_table
            set -l fields (string split '|' -- $line)
            if test "$fields[1]" = "$at"; and test $fields[2] = place; and test $fields[3] = $place
                __kestryctl_offer "$fields[4]" '' "$current" "$ended" $folder
            end
        end
    end
end

complete -c kestryctl -f -a '(__kestryctl_complete)'
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
            + quotedForBash(table) + "\n" + std::string(bashScript);
    case Shell::zsh:
        return "#compdef kestryctl\n"
               "# Completes kestryctl in zsh: source <(kestryctl completion zsh) after compinit,\n"
               "# or keep it as _kestryctl in a folder of fpath.\n\n"
               "_kestryctl_table="
            + quotedForBash(table) + "\n" + std::string(zshScript);
    case Shell::fish:
        return "# Completes kestryctl in fish: kestryctl completion fish | source\n\n"
               "set -g __kestryctl_table (string split \\n -- "
            + quotedForFish(table) + ")\n" + std::string(fishScript);
    }
    return {};
}

} // namespace Kestry
