#include "ZshCompletion.h"

namespace Kestry {

const std::string_view zshCompletion = R"script(
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

} // namespace Kestry
