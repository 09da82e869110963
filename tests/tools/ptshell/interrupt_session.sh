#!/usr/bin/env bash
# Ctrl-C in ptshell. At a terminal (a pseudo-terminal from script(1)), Ctrl-C stops an endless
# loop with "Interrupted" and leaves the session at its prompt with its variables and the
# tracer's data; a try catches it; at the prompt it drops the line being typed, and a Ctrl-C
# at an empty prompt only gives a new one. A script run that gets SIGINT ends with status 1.
set -uo pipefail
shell=$1 module=$2
work=$(mktemp -d)
trap 'exec 3>&- 2>/dev/null; kill $pid 2>/dev/null; rm -rf "$work"' EXIT
export HOME=$work  # the history file

fail() {
  echo "FAIL: $*"
  echo "--- output ---"
  cat -v "$work/out"
  exit 1
}
# Waits until the output holds at least count lines that match the pattern.
waitfor() {
  for _ in $(seq 1 300); do
    [ "$(grep -c -- "$1" "$work/out")" -ge "$2" ] && return 0
    sleep 0.1
  done
  fail "no $2 lines matching '$1'"
}
send() { printf '%b' "$1" >&3; }
# Waits for the next prompt after those seen so far.
prompts=0
nextprompt() {
  prompts=$((prompts + 1))
  waitfor '^>> ' $prompts
}

# Background commands of a script ignore SIGINT unless told otherwise. script(1) starts the
# command through $SHELL -c; exec keeps a shell that dies on SIGINT (dash) out of the way, so
# the status is the session's own.
mkfifo "$work/in"
env --default-signal=INT script -qfec "exec $shell --module $module" /dev/null \
  <"$work/in" >"$work/out" 2>&1 &
pid=$!
exec 3>"$work/in"
nextprompt

send "x = 42; PerfTools.Tracer.enable('g', true); PerfTools.Tracer.logOrviaData('g', 'p', true);\n"
nextprompt
send "print('looping'), for i = 1:1e6, for j = 1:1e6, end, end\n"
waitfor '^looping' 1
send '\003'
waitfor 'Error: Interrupted' 1
nextprompt
send "print(x + 1), r = PerfTools.Tracer.getRawData(); print(count(r))\n"
waitfor '^43' 1
waitfor '^1.$' 1  # the point logged before the loop

send "try, print('waiting'), sleep(1000), catch err, print(['caught ' err.message]), end\n"
waitfor '^waiting' 1
send '\003'
waitfor 'caught Interrupted' 1

send "print(99"  # a line being typed ...
sleep 0.3
send '\003'      # ... is dropped
nextprompt
send "print(7)\n"
waitfor '^7.$' 1
send '\003'
nextprompt
send '\003'
nextprompt
send "print('alive')\n"
waitfor '^alive' 1
send "exit\n"
wait $pid || fail "the session ended with status $?"
! grep -q '^99' "$work/out" || fail "the dropped line ran"
[ "$(grep -c 'Error' "$work/out")" -eq 1 ] || fail "an error besides the one interrupt"

# A script run ends at the interrupt with status 1.
exec 3>&-
: >"$work/out"
env --default-signal=INT script -qfec "exec $shell --module $module -e \"print('looping'), \
  for i = 1:1e6, for j = 1:1e6, end, end, print('not reached')\"" /dev/null \
  <"$work/in" >"$work/out" 2>&1 &
pid=$!
exec 3>"$work/in"
waitfor '^looping' 1
send '\003'
wait $pid
status=$?
[ $status -eq 1 ] || fail "a script ended with status $status"
waitfor 'Error: Interrupted' 1
! grep -q 'not reached' "$work/out" || fail "the script went on"
echo "interrupts behave"
