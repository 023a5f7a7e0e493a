#include "FishCompletion.h"

namespace Kestry {

const std::string_view fishCompletion = R"script(
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

} // namespace Kestry
