#!/bin/sh
# Reports once if the launcher of the user's own Keldra has run for some seconds: the daemon waits for its
# end.
before=
while sleep 3; do
    for process in /proc/[0-9]*; do
        read -r pid name _ parent _ <"$process/stat" || continue
        read -r by <"/proc/$parent/comm" || continue
        [ "$name $by" = "(keldra) keldra_monitor" ] || continue
        if [ "$pid" = "$before" ]; then
            exec /run/simulator/announce simulator "the launcher of your program (PID $pid) has not \
ended for some seconds. The daemon waits for its end and supervises nothing meanwhile. Keldra must detach \
itself, as by daemon(3), and its launcher must end with 0"
        fi
        before=$pid
    done
done 2>/dev/null
