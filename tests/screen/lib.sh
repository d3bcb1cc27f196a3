# shellcheck shell=bash
# What drives windows in a real X server: a server with a window manager, windows found by name, the mouse and the
# keyboard, screenshots, expectations. To be sourced. Wants Xvfb, openbox, xdotool, xprop, xwininfo, xclip and
# ImageMagick.
#
# A script begins with Begin. Positions are in pixels of a window's client area; a negative one counts from its right
# or lower edge. Scripts may run side by side: each has a screen, a window manager and a home of its own, and its
# pictures are named for it.

readonly longestWait=60   # seconds until an effect is given up, on a machine that may have much else to do
readonly tick=0.03        # seconds between two looks
readonly plotY=150        # a height inside the plot area of every plot window
readonly mainTitle='^Halmek(\.  File.*)?$'

drive=$(basename "$0")
server='' manager='' program=''
picture=0
exec {never}<> <(:)  # from which nothing is to be read

# Begin PROGRAMS_FOLDER OUTPUT_FOLDER, the arguments of the script: sets `programs`, `pictures`, the folder of the
# screenshots, and `scratch`, a folder that goes with the script, whose file `output` is what the program writes.
Begin() {
  [ $# -eq 2 ] || { echo "usage: $0 PROGRAMS_FOLDER OUTPUT_FOLDER" >&2; exit 2; }
  programs=$(cd "$1" && pwd) || exit 2
  mkdir -p "$2" && pictures=$(cd "$2" && pwd) || exit 2
  rm -f "$pictures/$drive"-*.png
  scratch=$(mktemp -d)
  trap 'StopServer; rm -rf "$scratch"' EXIT
  trap 'exit 1' INT TERM HUP
}

Pause() { read -rt $tick -u $never || true; }

Say() { echo "  $*"; }

# Ends the drive: what was expected, what was seen, and how the screen looks.
Fail() {
  echo "FAILED: $*" >&2
  local frame
  for ((frame = 1; frame < ${#FUNCNAME[@]}; ++frame)); do
    echo "  in ${FUNCNAME[$frame]}, line ${BASH_LINENO[$((frame - 1))]}" >&2
  done
  if [ -n "$server" ] && kill -0 "$server" 2>/dev/null; then
    if [ -n "$program" ] && HasEnded; then
      wait "$program"
      echo "  the program has ended with status $?" >&2
    fi
    [ ! -s "$scratch/output" ] || sed 's/^/  it wrote: /' "$scratch/output" >&2
    import -silent -window root "$pictures/$drive-failed.png" && echo "  the screen: $pictures/$drive-failed.png" >&2
  fi
  exit 1
}

# Expect WHAT EXPECTED SEEN
Expect() { [ "$2" = "$3" ] || Fail "$1: expected '$2', seen '$3'"; }

# Waits until a command succeeds: Await WHAT COMMAND...
Await() {
  local what=$1 end=$((SECONDS + longestWait))
  shift
  until "$@"; do
    [ $SECONDS -lt $end ] || Fail "waited $longestWait s for $what"
    Pause
  done
}

Not() { ! "$@"; }

# ---- the server -------------------------------------------------------------------------------------------------

HasManager() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

# Whether the server has said which display it is: it ends the line when it can be spoken to.
HasNumber() { read -r number 2>/dev/null <"$scratch/display"; }

# A screen of WIDTH x HEIGHT with a window manager, in a home of its own.
StartServer() {
  # Nothing of the desktop that this may be run on, and no printer of this machine.
  # shellcheck disable=SC2086
  unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS ${!XDG_@} ${!QT_@}
  export HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/run LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb CUPS_SERVER=127.0.0.1:1
  mkdir "$HOME"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  screen=$scratch/Xvfb_screen0 screenWidth=$1 screenHeight=$2

  : >"$scratch/display"
  Xvfb -displayfd 3 -fbdir "$scratch" -screen 0 "$1x$2x24" -nolisten tcp 3>"$scratch/display" \
    >"$scratch/server.log" 2>&1 &
  server=$!
  Await "the X server" HasNumber
  export DISPLAY=:$number
  openbox --sm-disable >"$scratch/manager.log" 2>&1 &
  manager=$!
  Await "the window manager" HasManager
}

# Ends everything that was started here, and nothing else.
StopServer() {
  local pid
  for pid in $program $manager $server; do kill "$pid" 2>/dev/null || true; done
  program='' manager='' server=''
  wait
}

# ---- windows ----------------------------------------------------------------------------------------------------

# The visible windows whose title matches a regular expression; no line where there is none.
Windows() { xdotool search --onlyvisible --name "$1" 2>/dev/null || true; }

# IsKind KIND WINDOW, KIND being window or message
IsKind() {
  local kind=window
  [[ $(xprop -id "$2" _NET_WM_WINDOW_TYPE 2>/dev/null) != *DIALOG* ]] || kind=message
  [ "$1" = $kind ]
}

# WindowOf KIND TITLE
WindowOf() {
  local id
  for id in $(Windows "$2"); do ! IsKind "$1" "$id" || echo "$id"; done
}

IsThere() { [ -n "$(WindowOf "$1" "$2")" ]; }

# Sets `window`, to none where there is none, or where the search fails because another is just being closed.
Find() {
  window=$(WindowOf "$1" "$2" | tail -n 1)
  [ -n "$window" ]
}

IsActive() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$1" ]; }

# Whether the window with the keyboard is of that kind and title: sets `window`.
IsInFront() {
  local form=$'(.*)\nWindow ([0-9]+)'
  [[ $(xdotool getactivewindow getwindowname getwindowgeometry 2>/dev/null) =~ $form ]] || return 1
  window=${BASH_REMATCH[2]}
  [[ ${BASH_REMATCH[1]} =~ $2 ]] && IsKind "$1" "$window"
}

# Waits for a window whose title matches, and until the program has given it the keyboard: sets `window`.
WaitFor() {
  local kind=window
  if [ "$1" = --message ]; then kind=message; shift; fi
  Await "the $kind '$1' to be in front" IsInFront "$kind" "$1"
  Settle
}

# Brings a window to the front: sets `window`.
Activate() {
  if ! IsInFront window "$1"; then
    Await "the window '$1'" Find window "$1"
    xdotool windowactivate "$window"
  fi
  WaitFor "$1"
}

# The client area of `window`: sets X, Y (on the screen), WIDTH, HEIGHT; and its frame: `frame` (left, right, top,
# bottom).
Measure() {
  local seen number='([0-9]+)'
  seen=$(xwininfo -id "$window" 2>/dev/null && xprop -id "$window" _NET_FRAME_EXTENTS)
  [[ $seen =~ left\ X:\ +(-?$number).*left\ Y:\ +(-?$number).*Relative.*Width:\ $number.*Height:\ $number.*=\ (.*) ]] ||
    Fail "the window is gone"
  X=${BASH_REMATCH[1]} Y=${BASH_REMATCH[3]} WIDTH=${BASH_REMATCH[5]} HEIGHT=${BASH_REMATCH[6]}
  IFS=', ' read -r -a frame <<<"${BASH_REMATCH[7]}"
}

HasSize() { Measure; [ "$WIDTH" = "$1" ] && [ "$HEIGHT" = "$2" ]; }

# The frame of `window` as "left top width height".
OuterPlace() {
  Measure
  echo "$((X - frame[0])) $((Y - frame[2])) $((WIDTH + frame[0] + frame[1])) $((HEIGHT + frame[2] + frame[3]))"
}

ExpectPlace() { Expect "$1" "$2" "$(OuterPlace)"; }

# Resize WIDTH HEIGHT: asks for a size of the client area and waits for it.
Resize() {
  xdotool windowsize "$window" "$1" "$2"
  Await "$1 x $2 of the window" HasSize "$1" "$2"
  Settle
}

# ---- quiet ------------------------------------------------------------------------------------------------------

# What the program and the window manager are at: what the system says of their threads, which changes whenever one
# runs; and the state of the server, which may be woken by a clock of its own. Sets `activity`.
Look() {
  local file
  read -r _ _ activity _ <"/proc/$server/stat"
  for file in /proc/{${program:-0},$manager}/task/*/status; do
    read -rd '' status 2>/dev/null <"$file" || true  # it ends without a zero, or is gone
    activity+=$status
  done
}

# Waits until all that was sent has been answered: everybody sleeps, and none has woken since the last look.
Settle() {
  local before activity='' status='' end=$((SECONDS + longestWait))
  until before=$activity; Look; [[ $activity = "$before" && ! $activity =~ ^[RD]|State:.[RD] ]]; do
    [ $SECONDS -lt $end ] || Fail "the program does not come to rest"
    Pause
  done
}

# ---- pictures ---------------------------------------------------------------------------------------------------

# A picture of `window` with its frame, and of what lies over it: Shot NAME [PIXELS], so many more below it.
Shot() {
  Settle
  local left top width height file
  read -r left top width height < <(OuterPlace)
  picture=$((picture + 1))
  file=$drive-$(printf '%02d' $picture)-$1
  # The server keeps its screen in a file. The picture is made of a copy while the drive goes on.
  cp "$screen" "$scratch/$file.xwd"
  {
    convert "xwd:$scratch/$file.xwd" -crop "${width}x$((height + ${2:-0}))$(printf '%+d%+d' "$left" "$top")" +repage \
      "$pictures/$file.png"
    rm "$scratch/$file.xwd"
  } &
}

# The lines of the screen that the plot in `window` takes, as the server keeps them: four bytes a pixel.
PlotLines() {
  Measure
  tail -c $((4 * screenWidth * (screenHeight - Y - 44))) "$screen" | head -c $((4 * screenWidth * (HEIGHT - 144)))
}

# The plot as it looks with the pointer away: sets `plot`.
SeePlot() {
  MoveAway
  plot=$(PlotLines | md5sum)
}

ExpectPlot() {
  SeePlot
  [ "$plot" = "$2" ] || { Shot unexpected; Fail "$1: the plot does not look as before"; }
}

ExpectOtherPlot() {
  SeePlot
  [ "$plot" != "$2" ] || { Shot unexpected; Fail "$1: the plot has not changed"; }
}

# ExpectColour WHAT RRGGBB: that something is of that colour, in the lines of the plot in `window`.
ExpectColour() {
  [ "$(PlotLines | od -An -v -t x4 -w4 | grep -c "$2\$")" -gt 0 ] || { Shot unexpected; Fail "$1: nothing is $2"; }
}

# ---- mouse and keyboard -----------------------------------------------------------------------------------------

# MoveTo X Y [COMMAND OF XDOTOOL]
MoveTo() {
  local x=$1 y=$2
  if [[ "$x$y" = *-* ]]; then
    Measure
    x=$((x < 0 ? x + WIDTH : x)) y=$((y < 0 ? y + HEIGHT : y))
  fi
  xdotool mousemove --window "$window" "$x" "$y" "${@:3}"
}

# Out of every window, so that nothing is lit up.
MoveAway() {
  xdotool mousemove $((screenWidth - 1)) $((screenHeight - 1))
  Settle
}

# Click X Y [BUTTON [TIMES]]
Click() {
  MoveTo "$1" "$2" click --repeat "${4:-1}" --delay 30 "${3:-1}"
  Settle
}

# Press KEY..., by the names of xdotool
Press() { xdotool key --delay 20 "$@"; Settle; }

# Types a text into the control that has the keyboard, in place of what it holds.
TypeText() { xdotool key ctrl+a type --delay 5 -- "$1"; Settle; }

# Types such a text, and confirms it.
Confirm() {
  TypeText "$1"
  Press Return
}

# Waits for a message box, takes its picture and closes it: Answer NAME [KEY]. The next step waits for the window that
# the keyboard goes back to.
Answer() {
  WaitFor --message '^Halmek$'
  Shot "$1"
  local box=$window
  Press "${2:-Return}"
  Await "the message to go" IsGone "$box"
}

IsGone() { ! xwininfo -id "$1" >/dev/null 2>&1; }

# ---- controls, by name ------------------------------------------------------------------------------------------

# The script says in `at` where its controls are: positions in the windows as large as they open.

# Push CONTROL
# shellcheck disable=SC2086,SC2154  # a position is two words
Push() { Click ${at[$1]}; }

# Enter CONTROL TEXT
Enter() {
  Push "$1"
  TypeText "$2"
}

# Choose MENU COUNT: the entry of a menu that Down reaches when it is pressed COUNT times.
Choose() {
  Push "$1"
  # shellcheck disable=SC2046
  Press $(printf 'Down %.0s' $(seq "$2")) Return
}

# Open CONTROL TITLE: a window, by a control of the main window.
Open() {
  Activate "$mainTitle"
  Push "$1"
  WaitFor "$2"
}

# Load CONTROL TITLE FILE: by a chooser that such a control opens.
Load() {
  Open "$1" "$2"
  Confirm "$3"
  WaitFor "$mainTitle"
}

# ---- plots ------------------------------------------------------------------------------------------------------

# AcrossPlot FRACTION: the nearest pixel of the client area. A fraction is a term of awk. The plot area of `window`
# begins 800 twips from the left and ends 415 from the right edge of its frame.
AcrossPlot() {
  Measure
  awk "BEGIN { printf \"%d\", (800 + ($(((WIDTH + frame[0] + frame[1]) * 15)) - 415 - 800 + 1) * ($1)) / 15 + 0.5 }"
}

# ClickAt FRACTION [BUTTON]
ClickAt() { Click "$(AcrossPlot "$1")" $plotY "${2:-1}"; }

readonly lineTitle='^Click Max$'
ArcTitle() { echo "^Arc $1 "; }
DeviationTitle() { echo "^Plot Wavelength Differences - Arc $1\$"; }

# ClickLine COLUMN: clicks a line of the sample night's arc in front, and waits for the window in which it is
# identified. That one must leave the line in sight.
ClickLine() {
  local x left right top bottom place
  x=$(AcrossPlot "($1 - 1) / 1695")
  Measure
  left=$((X + x - 10)) right=$((X + x + 10)) top=$((Y + 44)) bottom=$((Y + HEIGHT - 100))
  MoveTo "$x" $plotY click 1
  WaitFor --message "$lineTitle"
  read -r -a place < <(OuterPlace)
  if [ "${place[0]}" -lt $right ] && [ $((place[0] + place[2])) -gt $left ] &&
     [ "${place[1]}" -lt $bottom ] && [ $((place[1] + place[3])) -gt $top ]; then
    Fail "the window at ${place[*]} covers the line of column $1, at x = $((left + 10))"
  fi
}

# ---- start and stop ---------------------------------------------------------------------------------------------

# MakeNight FOLDER: a sample night.
MakeNight() {
  mkdir "$1"
  "$programs/halmek-night" "$1" >/dev/null || Fail "halmek-night makes no night"
}

# Start FOLDER [ARGUMENT...]: starts halmek in a folder.
Start() {
  cd "$1" || Fail "no folder $1"
  shift
  "$programs/halmek" "$@" >"$scratch/output" 2>&1 &
  program=$!
}

HasEnded() { ! kill -0 "$program" 2>/dev/null; }

# Waits for the end of the program, and for it to have had nothing to complain of.
ExpectEnd() {
  local status
  Await "the program to end" HasEnded
  wait "$program"
  status=$?
  program=''
  Expect "exit status" 0 $status
  Expect "what it wrote on the terminal" "" "$(<"$scratch/output")"
}

# Ends the program, whatever is not saved.
Quit() {
  Activate "$mainTitle"
  Press ctrl+q
  if IsThere message '^Halmek$'; then
    WaitFor --message '^Halmek$'
    Press Left space
  fi
  ExpectEnd
}

# The end of a drive.
Finish() {
  Quit
  StopServer
  echo "Driven in $SECONDS s; $picture pictures in $pictures"
}
