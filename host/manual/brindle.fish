# Completion of the command brindle for fish. Written by tools/command-files.

complete -c brindle -f
complete -c brindle -n __fish_use_subcommand -l help -d 'what the verbs are'
complete -c brindle -n __fish_use_subcommand -l version -d 'the version of the library'
complete -c brindle -n __fish_use_subcommand -a sum -d 'CRC-32, size and path of every file below each PATH'
complete -c brindle -n '__fish_seen_subcommand_from sum' -l jobs -d 'how many files may be summed at once, 1 to 1024; without it, one for each processor' -x
complete -c brindle -n '__fish_seen_subcommand_from sum' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from sum' -F
complete -c brindle -n __fish_use_subcommand -a seal -d 'writes down every file below DIR, for verify'
complete -c brindle -n '__fish_seen_subcommand_from seal' -l jobs -d 'how many files may be summed at once, 1 to 1024; without it, one for each processor' -x
complete -c brindle -n '__fish_seen_subcommand_from seal' -l output -d 'the manifest, - for standard output; without it, brindle-seal.xml in DIR' -r -F
complete -c brindle -n '__fish_seen_subcommand_from seal' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from seal' -a '(__fish_complete_directories)'
complete -c brindle -n __fish_use_subcommand -a verify -d 'tells how files differ from what seal wrote down'
complete -c brindle -n '__fish_seen_subcommand_from verify' -l jobs -d 'how many files may be summed at once, 1 to 1024; without it, one for each processor' -x
complete -c brindle -n '__fish_seen_subcommand_from verify' -l root -d 'the sealed directory; without it, the one that the manifest names' -x -a '(__fish_complete_directories)'
complete -c brindle -n '__fish_seen_subcommand_from verify' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from verify' -F
complete -c brindle -n __fish_use_subcommand -a plist -d 'a property list, or one value of it'
complete -c brindle -n '__fish_seen_subcommand_from plist' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from plist' -F
complete -c brindle -n __fish_use_subcommand -a pack -d 'a file in run-length coding'
complete -c brindle -n '__fish_seen_subcommand_from pack' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from pack' -F
complete -c brindle -n __fish_use_subcommand -a unpack -d 'the bytes of a file that \'pack\' coded'
complete -c brindle -n '__fish_seen_subcommand_from unpack' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from unpack' -F
complete -c brindle -n __fish_use_subcommand -a time -d 'a time in ticks, seconds, frames and timecode'
complete -c brindle -n '__fish_seen_subcommand_from time' -l rate -d 'frames a second: a number such as 24, 25 or 12.5, a fraction such as 30000/1001, or an NTSC rate as it is spoken of: 23.976, 29.97, 59.94. The time is printed at this rate, too.' -x -a '23.976 24 25 29.97 30 50 59.94 60'
complete -c brindle -n '__fish_seen_subcommand_from time' -l help -d 'what the verb does'
complete -c brindle -n __fish_use_subcommand -a calc -d 'the value of an arithmetic expression'
complete -c brindle -n '__fish_seen_subcommand_from calc' -l help -d 'what the verb does'
complete -c brindle -n __fish_use_subcommand -a guid -d 'new identifiers, one a line'
complete -c brindle -n '__fish_seen_subcommand_from guid' -l help -d 'what the verb does'
complete -c brindle -n __fish_use_subcommand -a layout -d 'the places of a tree of rectangles in a rectangle'
complete -c brindle -n '__fish_seen_subcommand_from layout' -l svg -d 'draws the tree into the file OUT instead; - for standard output' -r -F
complete -c brindle -n '__fish_seen_subcommand_from layout' -l explain -d 'writes a line for each alternative of the root instead: its form, its minimum and best size, whether it fits, and by which rule the chosen one, which is marked with an asterisk, beat it'
complete -c brindle -n '__fish_seen_subcommand_from layout' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from layout' -F
complete -c brindle -n __fish_use_subcommand -a console -d 'commands for developers: settings, trace volumes, files'
complete -c brindle -n '__fish_seen_subcommand_from console' -l attach -d 'executes the lines in the program that listens under NAME, or in process PID' -x -a '(brindle console --list 2>/dev/null | sed \'s/^[0-9]*  //\')'
complete -c brindle -n '__fish_seen_subcommand_from console' -l list -d 'writes who listens: a process, two blanks, its name'
complete -c brindle -n '__fish_seen_subcommand_from console' -l help -d 'what the verb does'
complete -c brindle -n '__fish_seen_subcommand_from console' -F
