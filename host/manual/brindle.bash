# Completion of the command brindle for bash. Written by tools/command-files.

_brindle() {
    local word=$2 verb=${COMP_WORDS[1]} option= options= IFS=$'\n'
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        COMPREPLY=($(IFS=' '; compgen -W 'sum seal verify plist pack unpack time calc guid layout console --help --version' -- "$word"))
        return
    fi
    # An option and its value are words of their own here, with or without a = between them.
    option=${COMP_WORDS[COMP_CWORD - 1]}
    if [ "$option" = = ]; then option=${COMP_WORDS[COMP_CWORD - 2]}; fi
    if [ "$word" = = ]; then option=${COMP_WORDS[COMP_CWORD - 1]} word=; fi
    case $verb$option in
    sum--jobs) :; return ;;
    seal--jobs) :; return ;;
    seal--output) COMPREPLY=($(compgen -f -- "$word")); compopt -o filenames; return ;;
    verify--jobs) :; return ;;
    verify--root) COMPREPLY=($(compgen -d -- "$word")); compopt -o filenames; return ;;
    time--rate) COMPREPLY=($(IFS=' '; compgen -W '23.976 24 25 29.97 30 50 59.94 60' -- "$word")); return ;;
    layout--svg) COMPREPLY=($(compgen -f -- "$word")); compopt -o filenames; return ;;
    console--attach) mapfile -t COMPREPLY < <(brindle console --list 2>/dev/null | sed 's/^[0-9]*  //' | awk -v word="$word" 'index($0, word) == 1'); return ;;
    esac
    case $verb in
    sum) options='--jobs= --help' ;;
    seal) options='--jobs= --output= --help' ;;
    verify) options='--jobs= --root= --help' ;;
    plist) options='--help' ;;
    pack) options='--help' ;;
    unpack) options='--help' ;;
    time) options='--rate= --help' ;;
    calc) options='--help' ;;
    guid) options='--help' ;;
    layout) options='--svg= --explain --help' ;;
    console) options='--attach= --list --help' ;;
    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(IFS=' '; compgen -W "$options" -- "$word"))
        [[ ${COMPREPLY[0]} == *= ]] && compopt -o nospace
        return
    fi
    case $verb in
    sum|verify|plist|pack|unpack|layout|console) COMPREPLY=($(compgen -f -- "$word")); compopt -o filenames ;;
    seal) COMPREPLY=($(compgen -d -- "$word")); compopt -o filenames ;;
    esac
}
complete -F _brindle brindle
