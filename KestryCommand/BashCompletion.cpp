#include "BashCompletion.h"

namespace Kestry {

const std::string_view bashCompletion = R"script(
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

} // namespace Kestry
