# shellcheck shell=bash
# What drives windows in a real X server: a server with a window manager, windows found by name, the mouse and the
# keyboard, screenshots, expectations. To be sourced. Wants Xvfb, openbox, xdotool, xprop, xwininfo, xclip and
# ImageMagick.
#
# A script begins with Begin. Positions are in pixels of a window's client area; a negative one counts from its right
# or lower edge.

readonly longestWait=20   # seconds until an effect is given up
readonly tick=0.05        # seconds between two looks
readonly plotY=150        # a height inside the plot area of every plot window
readonly mainTitle='^Halmek(\.  File.*)?$'

server='' manager='' program=''
picture=0

# Begin PROGRAMS_FOLDER OUTPUT_FOLDER, the arguments of the script: sets `programs`, `pictures`, the folder of the
# screenshots, and `scratch`, a folder that goes with the script, whose file `output` is what the program writes.
Begin() {
  if [ $# -ne 2 ]; then
    echo "usage: $0 PROGRAMS_FOLDER OUTPUT_FOLDER" >&2
    exit 2
  fi
  programs=$(cd "$1" && pwd) || exit 2
  mkdir -p "$2" && pictures=$(cd "$2" && pwd) || exit 2
  rm -f "$pictures"/[0-9]*-*.png "$pictures/failed.png"
  scratch=$(mktemp -d)
  trap 'StopServer; rm -rf "$scratch"' EXIT
  trap 'exit 1' INT TERM HUP
}

# Milliseconds since some moment.
Now() { local t=$EPOCHREALTIME; echo $((${t/./} / 1000)); }

Say() { echo "  $*"; }

# Ends the drive: what was expected, what was seen, and how the screen looks.
Fail() {
  echo "FAILED: $*" >&2
  local frame
  for ((frame = 1; frame < ${#FUNCNAME[@]}; ++frame)); do
    echo "  in ${FUNCNAME[$frame]}, line ${BASH_LINENO[$((frame - 1))]}" >&2
  done
  if [ -n "$server" ] && kill -0 "$server" 2>/dev/null; then
    echo "  the windows: $(Titles)" >&2
    if [ -n "$program" ] && ! kill -0 "$program" 2>/dev/null; then
      wait "$program"
      echo "  the program has ended with status $?" >&2
    fi
    [ ! -s "$scratch/output" ] || sed 's/^/  it wrote: /' "$scratch/output" >&2
    import -silent -window root "$pictures/failed.png" && echo "  the screen: $pictures/failed.png" >&2
  fi
  exit 1
}

# Expect WHAT EXPECTED SEEN
Expect() { [ "$2" = "$3" ] || Fail "$1: expected '$2', seen '$3'"; }

ExpectSameFile() { cmp -s "$1" "$2" || Fail "$1 and $2 differ: $(cmp "$1" "$2" 2>&1)"; }

# Waits until a command succeeds: Await WHAT COMMAND...
Await() {
  local what=$1 end=$((SECONDS + longestWait))
  shift
  until "$@"; do
    [ $SECONDS -lt $end ] || Fail "waited $longestWait s for $what"
    sleep $tick
  done
}

Not() { ! "$@"; }

# ---- the server -------------------------------------------------------------------------------------------------

HasManager() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

HasNumber() { grep -qs . "$scratch/display"; }

# A screen of WIDTH x HEIGHT with a window manager, in a home of its own.
StartServer() {
  export HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/run LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb
  mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
  unset WAYLAND_DISPLAY XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME XDG_CACHE_HOME XDG_CURRENT_DESKTOP DBUS_SESSION_BUS_ADDRESS
  # No printer that this machine may have.
  export CUPS_SERVER=127.0.0.1:1
  unset QT_SCALE_FACTOR QT_SCREEN_SCALE_FACTORS QT_FONT_DPI QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME

  Xvfb -displayfd 3 -screen 0 "$1x$2x24" -nolisten tcp 3>"$scratch/display" >"$scratch/server.log" 2>&1 &
  server=$!
  Await "the X server" HasNumber
  DISPLAY=:$(<"$scratch/display")
  export DISPLAY
  openbox --sm-disable >"$scratch/manager.log" 2>&1 &
  manager=$!
  Await "the window manager" HasManager
}

# Ends everything that was started here, and nothing else.
StopServer() {
  local pid
  for pid in $program $manager $server; do
    kill "$pid" 2>/dev/null && wait "$pid" 2>/dev/null
  done
  program='' manager='' server=''
  return 0
}

# ---- windows ----------------------------------------------------------------------------------------------------

# The visible windows whose title matches a regular expression; no line where there is none.
Windows() { xdotool search --onlyvisible --name "$1" 2>/dev/null || true; }

IsDialog() { xprop -id "$1" _NET_WM_WINDOW_TYPE 2>/dev/null | grep -q DIALOG; }

# WindowOf KIND TITLE, KIND being window or message
WindowOf() {
  local id
  for id in $(Windows "$2"); do
    if IsDialog "$id"; then [ "$1" = window ] || echo "$id"; else [ "$1" = message ] || echo "$id"; fi
  done
}

IsThere() { [ -n "$(WindowOf "$1" "$2")" ]; }

# Sets `window`, to none where there is none, or where the search fails because another is just being closed.
Find() {
  window=$(WindowOf "$1" "$2" | tail -n 1)
  [ -n "$window" ]
}

IsActive() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$1" ]; }

# Waits for a window whose title matches, and until it has the keyboard: sets `window`.
WaitFor() {
  local kind=window
  if [ "$1" = --message ]; then kind=message; shift; fi
  Await "the $kind '$1'" Find "$kind" "$1"
  Await "the keyboard to be at '$1'" IsActive "$window"
  Settle
}

WaitForNo() { Await "the window '$1' to go" Not IsThere "${2:-window}" "$1"; }

Titles() {
  local id
  for id in $(Windows .); do printf '"%s" ' "$(xdotool getwindowname "$id")"; done
}

# Brings a window to the front: sets `window`.
Activate() {
  Await "the window '$1'" Find window "$1"
  xdotool windowactivate "$window"
  Await "'$1' to come to the front" IsActive "$window"
  Settle
}

# The client area of `window`: sets X, Y (on the screen), WIDTH, HEIGHT; and its frame: `frame` (left, right, top,
# bottom).
Measure() {
  read -r X Y WIDTH HEIGHT < <(xwininfo -id "$window" 2>/dev/null |
    awk '/Absolute/ { print $4 } /Width:|Height:/ { print $2 }' | xargs)
  IFS=', ' read -r -a frame < <(xprop -id "$window" _NET_FRAME_EXTENTS 2>/dev/null | sed -n 's/.*= //p')
  [ ${#frame[@]} -eq 4 ] || Fail "the window is gone"
}

HasSize() { Measure; [ "$WIDTH" = "$1" ] && [ "$HEIGHT" = "$2" ]; }

# The frame of `window` as "left top width height".
OuterPlace() {
  Measure
  echo "$((X - frame[0])) $((Y - frame[2])) $((WIDTH + frame[0] + frame[1])) $((HEIGHT + frame[2] + frame[3]))"
}

HasPlace() { [ "$(OuterPlace)" = "$1" ]; }

# ---- quiet ------------------------------------------------------------------------------------------------------

# What the program has done so far: its time on the processor, and its state.
Activity() { awk '{ sub(/.*\) /, ""); print $1, $12 + $13 }' "/proc/$program/stat" 2>/dev/null || true; }

# Waits until the program has answered what was sent to it: it sleeps, and the screen stays as it is.
Settle() {
  local before='' now end=$((SECONDS + longestWait))
  while [ $SECONDS -lt $end ]; do
    now="$(Activity) $(Look)"
    case $now in [ST]\ *) [ "$now" != "$before" ] || return 0 ;; esac
    [ -n "$program" ] && kill -0 "$program" 2>/dev/null || return 0
    before=$now
    sleep $tick
  done
  Fail "the program does not come to rest"
}

# ---- pictures ---------------------------------------------------------------------------------------------------

# The signature of the screen, or of a part of it: WIDTHxHEIGHT+X+Y.
Look() { import -silent -window root ${1:+-crop "$1"} -depth 8 rgb:- | md5sum | cut -d ' ' -f 1; }

# The signature of the plot in `window`: of its plot area, which the pointer must have left.
LookAtPlot() {
  Measure
  Look "$((WIDTH - 85))x$((HEIGHT - 144))+$((X + 53))+$((Y + 44))"
}

# A screenshot of `window` with its frame, and of what lies over it: Shot NAME [PIXELS], so many more below it.
Shot() {
  Settle
  local left top width height
  read -r left top width height < <(OuterPlace)
  height=$((height + ${2:-0}))
  picture=$((picture + 1))
  # What hangs out of the screen cannot be seen.
  if [ $left -lt 0 ]; then width=$((width + left)) left=0; fi
  if [ $top -lt 0 ]; then height=$((height + top)) top=0; fi
  import -silent -window root -crop "${width}x$height+$left+$top" +repage \
    "$pictures/$(printf '%02d' $picture)-$1.png"
}

# ---- mouse and keyboard -----------------------------------------------------------------------------------------

# A position of the client area on the screen: sets `atX`, `atY`.
Locate() {
  Measure
  atX=$((X + $1 + ($1 < 0 ? WIDTH : 0))) atY=$((Y + $2 + ($2 < 0 ? HEIGHT : 0)))
}

# MoveTo X Y
MoveTo() {
  Locate "$1" "$2"
  xdotool mousemove "$atX" "$atY"
}

# Out of every window, so that nothing is lit up.
MoveAway() { xdotool mousemove 1599 999; Settle; }

# Click X Y [BUTTON [TIMES]]
Click() {
  MoveTo "$1" "$2"
  xdotool click --repeat "${4:-1}" --delay 30 "${3:-1}"
  Settle
}

DoubleClick() { Click "$1" "$2" 1 2; }

# Press KEY..., by the names of xdotool
Press() { xdotool key --clearmodifiers --delay 20 "$@"; Settle; }

# Types a text into the control that has the keyboard, in place of what it holds.
TypeText() {
  xdotool key --clearmodifiers ctrl+a
  xdotool type --clearmodifiers --delay 5 -- "$1"
  Settle
}

# TypeInto X Y TEXT
TypeInto() {
  Click "$1" "$2"
  TypeText "$3"
}

# Chooses an entry of a menu: Menu X Y COUNT, COUNT being how often Down is pressed.
Menu() {
  Click "$1" "$2"
  local i
  for ((i = 0; i < $3; ++i)); do xdotool key Down; done
  Settle
}

# What the clipboard holds once the program has put something there.
Clipboard() { timeout 5 xclip -o -selection clipboard 2>/dev/null || true; }

ClearClipboard() { xclip -selection clipboard -i </dev/null >/dev/null 2>&1; }

HasClipboard() { [ -n "$(Clipboard)" ]; }

# Waits for a message box, takes its picture and closes it with Return. `said` becomes the signature of what it
# shows, by which messages can be told apart and known again; `window` is the one before.
Answer() {
  local before=${window:-}
  WaitFor --message '^Halmek$'
  Measure
  said=$(Look "${WIDTH}x$HEIGHT+$X+$Y")
  Shot "$1"
  local box=$window
  xdotool key Return
  Await "the message to go" IsGone "$box"
  window=$before
  Settle
}

IsGone() { ! xdotool search --onlyvisible --name . 2>/dev/null | grep -qx "$1"; }

# Types a text in place of what the control with the keyboard holds, and confirms it.
Confirm() {
  xdotool key --clearmodifiers ctrl+a
  xdotool type --clearmodifiers --delay 5 -- "$1"
  xdotool key Return
}

# A window is looked for anew each time: while another one closes, none may be found.
IsInFront() {
  window=$(WindowOf window "$1" | tail -n 1)
  [ -n "$window" ] && IsActive "$window"
}

# Waits until the program is at rest with a window in front that it has brought there itself: sets `window`.
Returned() {
  Await "'$1' to come to the front" IsInFront "$1"
  Settle
}

ArcTitle() { echo "^Arc $1 "; }
DeviationTitle() { echo "^Plot Wavelength Differences - Arc $1\$"; }

# ---- controls, by name ------------------------------------------------------------------------------------------

# The script says in `at` where its controls are: positions in the windows as large as they open.

# Push CONTROL
# shellcheck disable=SC2086,SC2154  # a position is two words
Push() { Click ${at[$1]}; }

# Enter CONTROL TEXT
# shellcheck disable=SC2086
Enter() { TypeInto ${at[$1]} "$2"; }

# Open CONTROL TITLE: a window, by a control of the main window.
Open() {
  Activate "$mainTitle"
  Push "$1"
  WaitFor "$2"
}

# ---- plots ------------------------------------------------------------------------------------------------------

# The plot area of `window` begins 800 twips from the left and ends 415 from the right edge of its frame.
# AcrossPlot FRACTION: the nearest pixel of the client area.
AcrossPlot() {
  Measure
  awk -v fraction="$1" -v outer=$(((WIDTH + frame[0] + frame[1]) * 15)) \
    'BEGIN { printf "%d\n", (800 + (outer - 415 - 800 + 1) * fraction) / 15 + 0.5 }'
}

# NumberAt PIXEL COUNT: the number there on an axis of 0..COUNT, rounded.
NumberAt() {
  Measure
  awk -v x=$(($1 * 15)) -v outer=$(((WIDTH + frame[0] + frame[1]) * 15)) -v count="$2" \
    'BEGIN { printf "%d\n", (x - 800) / (outer - 415 - 800) * count + 0.5 }'
}

# ClickAt FRACTION [BUTTON]
ClickAt() { Click "$(AcrossPlot "$1")" $plotY "${2:-1}"; }

Ratio() { awk "BEGIN { print $1 }"; }

# The plot as it looks with the pointer away: sets `plot`.
SeePlot() {
  MoveAway
  plot=$(LookAtPlot)
}

ExpectPlot() {
  local what=$1 expected=$2
  SeePlot
  [ "$plot" = "$expected" ] || { Shot unexpected; Fail "$what: the plot does not look as before"; }
}

ExpectOtherPlot() {
  local what=$1 before=$2
  SeePlot
  [ "$plot" != "$before" ] || { Shot unexpected; Fail "$what: the plot has not changed"; }
}

# ---- start and stop ---------------------------------------------------------------------------------------------

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
  if IsThere message '^Halmek$'; then Press alt+q; fi
  ExpectEnd
}

ExpectSettings() {
  local file=$1/Halmek8.ini
  [ -f "$file" ] || Fail "there is no $file"
  Expect "lines of the settings" 30 "$(wc -l <"$file")"
  Expect "lines ended by CR LF" 30 "$(grep -c $'\r$' "$file")"
}

# ---- places and sizes -------------------------------------------------------------------------------------------

# Resize WIDTH HEIGHT: asks for a size of the client area and waits for it.
Resize() {
  xdotool windowsize "$window" "$1" "$2"
  Await "$1 x $2 of the window" HasSize "$1" "$2"
  Settle
}

# ExpectPlace WHAT PLACE: that of `window`, to a pixel.
ExpectPlace() {
  local expected seen i
  read -r -a expected <<<"$2"
  read -r -a seen < <(OuterPlace)
  for i in 0 1 2 3; do
    local off=$((expected[i] - seen[i]))
    [ ${off#-} -le 1 ] || Fail "$1: left, top, width, height expected '$2', seen '${seen[*]}'"
  done
}

# ---- the recipe -------------------------------------------------------------------------------------------------

# SaveRecipe FILE: by the menu of the main window. The steps of a file, without comments and empty lines: StepsOf.
SaveRecipe() {
  Activate "$mainTitle"
  # shellcheck disable=SC2086
  Menu ${at[main.menuRecipe]} 2
  Press Return
  WaitFor --message '^Save Recipe As$'
  Shot save-recipe
  TypeText "$1"
  Press Return
  Await "$1" test -s "$1"
  WaitForNo '^Save Recipe As$' message
}

# The header of a FITS file, one card a line: up to 200 cards, without END and what follows it.
CardsOf() { head -c 17280 "$1" | LC_ALL=C fold -b -w 80 | tr -d '\0' | sed '/^END *$/,$d'; }

StepsOf() { grep -v '^ *#\|^ *$' -- "$@"; }
