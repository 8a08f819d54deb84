# Completion of tallyvoxctl for fish.

function __tallyvoxctl_outputs
    tallyvoxctl list 2>/dev/null | string replace -r '^(\d+): ' '$1\t'
end

set -l before 'not __fish_seen_subcommand_from list play export doctor'
set -l sounding '__fish_seen_subcommand_from play export'

complete -c tallyvoxctl -f
complete -c tallyvoxctl -l help -d 'Explain the program or the verb'
complete -c tallyvoxctl -n $before -l version -d 'Tell the version'
complete -c tallyvoxctl -n $before -a list -d 'List the outputs'
complete -c tallyvoxctl -n $before -a play -d 'Let every channel of an output speak its number'
complete -c tallyvoxctl -n $before -a export -d 'Write to a file what an output would be given'
complete -c tallyvoxctl -n $before -a doctor -d 'Tell what stands between you and a sound'

complete -c tallyvoxctl -n '__fish_seen_subcommand_from list doctor' -l json -d 'In a form for programs'

complete -c tallyvoxctl -n '__fish_seen_subcommand_from play' -l output -x -a '(__tallyvoxctl_outputs)' -d 'The output'

complete -c tallyvoxctl -n '__fish_seen_subcommand_from export' -F
complete -c tallyvoxctl -n '__fish_seen_subcommand_from export' -l channels -x -d 'Channels of the output, 1 to 16383'
complete -c tallyvoxctl -n '__fish_seen_subcommand_from export' -l rate -x -a '44100 48000 88200 96000 176400 192000' -d 'Sample rate in Hz'
complete -c tallyvoxctl -n '__fish_seen_subcommand_from export' -l format -x -a 'float pcm24 pcm16' -d 'How samples are stored'
complete -c tallyvoxctl -n '__fish_seen_subcommand_from export' -l split -d 'One mono file a channel, in a folder'

complete -c tallyvoxctl -n $sounding -l first -x -d 'First channel to speak'
complete -c tallyvoxctl -n $sounding -l last -x -d 'Last channel to speak'
complete -c tallyvoxctl -n $sounding -l all -d 'All channels, up to 128'
complete -c tallyvoxctl -n $sounding -l solo -x -d 'Only this channel speaks'
complete -c tallyvoxctl -n $sounding -l sequential -d 'One channel after another in turn'
complete -c tallyvoxctl -n $sounding -l db -x -d 'Peak level of each channel in dBFS, -60 to -6'
complete -c tallyvoxctl -n $sounding -l gap -x -d 'Silence between repetitions in seconds, 0.2 to 3.0'
complete -c tallyvoxctl -n $sounding -l seconds -x -d 'End after so many seconds'
complete -c tallyvoxctl -n $sounding -l rounds -x -d 'End after so many rounds'
