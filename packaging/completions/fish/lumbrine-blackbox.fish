# fish completion for lumbrine-blackbox

complete -c lumbrine-blackbox -f
complete -c lumbrine-blackbox -s h -l help -d 'print a summary and end'
complete -c lumbrine-blackbox -l version -d 'print the version and end'
complete -c lumbrine-blackbox -s f -l file -r -F -d 'the recording, or a copy of it'
complete -c lumbrine-blackbox -a 'show' -d 'print the records as lines'
complete -c lumbrine-blackbox -a 'save' -d 'write a compressed copy'
complete -c lumbrine-blackbox -a 'pcap' -d 'write datagrams and MIDI for Wireshark'
complete -c lumbrine-blackbox -a 'stats' -d 'print how fast and how completely everything went'
complete -c lumbrine-blackbox -a 'facts' -d 'print what the recording tells of the host'
complete -c lumbrine-blackbox -a 'report' -d 'write a copy for those who help'
complete -c lumbrine-blackbox -a 'replay' -d 'play the recording to this version, and compare'
complete -c lumbrine-blackbox -l from -x -d 'not before this time'
complete -c lumbrine-blackbox -l to -x -d 'not after this time'
complete -c lumbrine-blackbox -l strip -x -d 'only what is about this strip'
complete -c lumbrine-blackbox -l kind -x -a 'datagrams midi scripting screen log system' -d 'only these'
complete -c lumbrine-blackbox -l redact -d 'without names, comments and addresses'
complete -c lumbrine-blackbox -l follow -d 'go on as the receiver does'
