# Sourced by the commands at the root: the packages they need from Debian 12, and their
# installation.

BOUWEN="g++ cmake ninja-build pkg-config qt6-base-dev qt6-declarative-dev libepoxy-dev libegl-dev libgl-dev libglm-dev
  zlib1g-dev libicu-dev libx11-dev libx11-xcb-dev libxcb1-dev libxcb-shm0-dev libxcb-randr0-dev
  libxcb-dpms0-dev libxcb-shape0-dev libxcb-xfixes0-dev libpulse-dev libkissfft-dev"
DRAAIEN="libqt6gui6 libqt6widgets6 libegl1 libegl-mesa0 libgl1-mesa-dri fonts-dejavu-core lsof libqt6quick6
  qml6-module-qtquick qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript"
PROEVEN="libgtest-dev libgmock-dev libbenchmark-dev xvfb xauth dbus openbox picom xscreensaver
  xscreensaver-data xdotool x11-utils x11-xserver-utils imagemagick iproute2 procps
  dpkg-dev fakeroot file qml6-module-qttest qml6-module-qtquick-window at-spi2-core libatspi2.0-dev
  libxcb-damage0-dev libxcb-xtest0-dev pulseaudio pulseaudio-utils"

# zorg_voor PACKAGE...: installs the missing packages, and prints their names.
zorg_voor() {
  local mist=() pakket
  for pakket in "$@"; do
    dpkg-query -W -f='${Status}' "$pakket" 2>/dev/null | grep -q '^install ok installed$' || mist+=("$pakket")
  done
  [ ${#mist[@]} -eq 0 ] && return 0
  if ! command -v apt-get >/dev/null; then
    echo "Er ontbreekt: ${mist[*]}. Zonder apt-get moet u dat zelf installeren." >&2
    return 1
  fi
  echo "Dit wordt geïnstalleerd: ${mist[*]}" >&2
  local als=""
  [ "$(id -u)" -eq 0 ] || als="sudo"
  { $als apt-get update -q && $als env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${mist[@]}"; } >&2
}

# bouw PRESET TARGET...: builds, with all output on standard error.
bouw() {
  local map="build/$1"
  shift
  local stil=()
  [ -e "$map/.gebouwd" ] && stil=(--quiet)
  ninja "${stil[@]}" -C "$map" "$@" | sed '/no work to do/d' >&2
  touch "$map/.gebouwd"
}

# scenes: the raw values of all scenes, from the table.
scenes() {
  sed -nE 's/^(VLAK|DRIE)\(([a-z]+),.*/\2/p' worlds/Scenes.def
}
