#!/bin/sh
# Keeps the reason of a reboot on flash. keldra_monitor gets it in place of the terminal's LED script
# and calls it before every restart of Keldra, a cold start included, and before the reboot:
#
#   keldra_monitor -L /usr/sbin/keep-reboot-reason.sh
#
# Each call adds the last lines of the system log and the monitor's status of that moment to a file,
# the newest at its end, and then calls the real LED script.
led_script=/usr/sbin/led_ctl.sh
file=/sysopt/reboot_reason.log # must be readable from both partitions and survive a reboot
size=65536                     # bytes at most; while it is written, it takes twice as many
lines=40                       # of the log, each time

PATH=$PATH:/usr/sbin:/usr/bin:/sbin:/bin

# busybox's syslogd -C keeps the log in memory, for logread; any other writes a file.
log() {
  logread 2>/dev/null || cat /var/log/messages
}

record() {
  echo "=== $(date): $led_script $*"
  log | tail -n "$lines"
  keldra_monitor -i # answers at once: the monitor handles signals while it waits for this script
}

# The old file stays whole until the new one is on flash: the watchdog may bite at any time.
{
  cat "$file" 2>/dev/null
  record "$@"
} 2>&1 | tail -c "$size" >"$file.new" && sync && mv "$file.new" "$file" && sync

exec "$led_script" "$@"
