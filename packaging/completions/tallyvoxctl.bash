# Completion of tallyvoxctl for bash.

_tallyvoxctl() {
    local word=$2 previous=$3 verb=${COMP_WORDS[1]}
    local choices="--first --last --all --solo --sequential --db --gap --seconds --rounds --help"
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "list play export doctor --help --version" -- "$word")
        return
    fi
    case $previous in
    --output)
        mapfile -t COMPREPLY < <(compgen -W "$(tallyvoxctl list 2>/dev/null | cut -d: -f1)" -- "$word")
        return
        ;;
    --format)
        mapfile -t COMPREPLY < <(compgen -W "float pcm24 pcm16" -- "$word")
        return
        ;;
    --rate)
        mapfile -t COMPREPLY < <(compgen -W "44100 48000 88200 96000 176400 192000" -- "$word")
        return
        ;;
    --first | --last | --solo | --db | --gap | --seconds | --rounds | --channels)
        return
        ;;
    esac
    case $verb in
    list | doctor)
        mapfile -t COMPREPLY < <(compgen -W "--json --help" -- "$word")
        ;;
    play)
        mapfile -t COMPREPLY < <(compgen -W "--output $choices" -- "$word")
        ;;
    export)
        if [[ $word == -* ]]; then
            mapfile -t COMPREPLY < <(
                compgen -W "--channels --rate --format --split $choices" -- "$word")
        else
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
        fi
        ;;
    esac
}

complete -F _tallyvoxctl tallyvoxctl
