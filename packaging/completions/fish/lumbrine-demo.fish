# fish completion for lumbrine-demo

complete -c lumbrine-demo -f
complete -c lumbrine-demo -s h -l help -d 'print a summary and end'
complete -c lumbrine-demo -l version -d 'print the version and end'
complete -c lumbrine-demo -l tracks -x -d 'tracks of the simulated session'
complete -c lumbrine-demo -l surfaces -x -a '1 2' -d 'HUI surfaces that Pro Tools is set up for'
complete -c lumbrine-demo -l scripting-port -x -d 'TCP port of the scripting service'
complete -c lumbrine-demo -l no-scripting -d 'offer no scripting service'
complete -c lumbrine-demo -l ports-lost -d 'let Pro Tools use the MIDI ports only after the command reconnect'
complete -c lumbrine-demo -l tour -d 'let two clients play by themselves, and end'
