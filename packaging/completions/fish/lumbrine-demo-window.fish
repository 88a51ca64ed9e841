# fish completion for lumbrine-demo-window

complete -c lumbrine-demo-window -f
complete -c lumbrine-demo-window -s h -l help -d 'print a summary and end'
complete -c lumbrine-demo-window -l version -d 'print the version and end'
complete -c lumbrine-demo-window -l tracks -x -d 'tracks of the simulated session'
complete -c lumbrine-demo-window -l surfaces -x -a '1 2' -d 'HUI surfaces that Pro Tools is set up for'
complete -c lumbrine-demo-window -l scripting-port -x -d 'TCP port of the scripting service'
complete -c lumbrine-demo-window -l ports-lost -d 'let Pro Tools use the MIDI ports only after Reconnect to PT'
