#!/bin/sh
# Tells once that the launcher of the user's own Keldra has not ended for some seconds: the daemon
# waits for that.
before=
while sleep 3; do
    for process in /proc/[0-9]*; do
        read -r pid name _ parent _ <"$process/stat" || continue
        read -r by <"/proc/$parent/comm" || continue
        [ "$name $by" = "(keldra) keldra_monitor" ] || continue
        if [ "$pid" = "$before" ]; then
            exec /run/simulator/announce simulator "the launcher of your program (PID $pid) has not" \
                "ended for some seconds, and the daemon waits for it, supervising nothing: Keldra has" \
                "to detach itself, as by daemon(3), and its launcher to end with 0"
        fi
        before=$pid
    done
done 2>/dev/null
