# Sourced by the commands at the root: how they get what packaging/benodigd lists,
# and how they build. Each trouble is told in one line on standard error.

# Reads the list for the phases given. Sets `pakketten` (Debian's) and `dingen`
# ("kind name arch fedora opensuse", one per line of the list).
lees_benodigd() {
  local fase soort naam debian elders
  pakketten=() dingen=()
  while read -r fase soort naam debian elders; do
    case " $* " in *" $fase "*) ;; *) continue ;; esac
    [ "$debian" = - ] || pakketten+=("$debian")
    [ "$soort" = deb ] || dingen+=("$soort $naam $elders")
  done <packaging/benodigd
}

# heeft KIND NAME: whether the program, the module, or the package of rpm or of pacman is there.
heeft() {
  case $1 in
    prog) command -v "$2" >/dev/null ;;
    pc) pkg-config --exists "$2" 2>/dev/null ;;
    rpm) rpm -q "$2" >/dev/null 2>&1 ;;
    pacman) pacman -Q "$2" >/dev/null 2>&1 ;;
  esac
}

# The words of `$@`, each once, on one line.
eenmaal() {
  local woord alle=" "
  for woord in "$@"; do
    case $alle in *" $woord "*) ;; *) alle+="$woord " ;; esac
  done
  alle=${alle# }
  echo "${alle% }"
}

# Debian: installs what is missing.
zorg_met_apt() {
  local mist=() pakket als=() log
  for pakket in "${pakketten[@]}"; do
    [ "$(dpkg-query -W -f='${Status}' "$pakket" 2>/dev/null)" = "install ok installed" ] || mist+=("$pakket")
  done
  [ ${#mist[@]} -eq 0 ] && return 0
  local zelf="apt-get install ${mist[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    als=(sudo)
    if ! command -v sudo >/dev/null || ! sudo -v; then
      echo "Hiervoor is een beheerder nodig, laat die dit doen: $zelf" >&2
      return 1
    fi
  fi
  echo "Dit wordt geïnstalleerd: ${mist[*]}" >&2
  log=$(mktemp)
  # A source that fails keeps nobody from what the others have.
  "${als[@]}" apt-get update -q >&2 || echo "Een bron van apt antwoordt niet; met de andere gaat het verder." >&2
  if "${als[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
    apt-get install -q -y --no-install-recommends "${mist[@]}" 2>&1 | tee "$log" >&2; then
    rm -f "$log"
    return 0
  fi
  local reden="Het installeren lukt niet"
  local regel
  while IFS= read -r regel; do
    case $regel in
      *"emporary failure resolving"* | *"ould not resolve"* | *"ould not connect"* | *"etwork is unreachable"*)
        reden="Er is geen netwerk om van te installeren"
        break
        ;;
    esac
  done <"$log"
  rm -f "$log"
  echo "$reden; doe zodra het kan: ${als[*]:+sudo }$zelf" >&2
  return 1
}

# The first package manager of this system whose packages the list names; nothing for none.
beheer() {
  local naam
  for naam in dnf zypper pacman; do
    if command -v "$naam" >/dev/null; then
      echo "$naam"
      return
    fi
  done
}

# Elsewhere: says what is missing, and which command installs it.
zorg_elders() {
  local ding soort naam arch fedora opensuse vraag beheer namen=() vragen=()
  beheer=$(beheer)
  for ding in "${dingen[@]}"; do
    read -r soort naam arch fedora opensuse <<<"$ding"
    case $beheer-$soort in
      dnf-pak) vraag=$fedora ;;
      zypper-pak) vraag=$opensuse ;;
      pacman-*) vraag=$arch ;;
      # Only a package manager knows of packages.
      -pak) continue ;;
      *-prog) vraag=/usr/bin/$naam ;;
      *-pc) vraag="'pkgconfig($naam)'" ;;
    esac
    case $beheer-$soort in
      pacman-pak) heeft pacman "$vraag" && continue ;;
      *-pak) heeft rpm "$vraag" && continue ;;
      *) heeft "$soort" "$naam" && continue ;;
    esac
    namen+=("$naam")
    vragen+=("$vraag")
  done
  [ ${#namen[@]} -eq 0 ] && return 0
  local opdracht="installeer dat met het pakketbeheer van dit systeem"
  case $beheer in
    dnf | zypper) opdracht="sudo $beheer install ${vragen[*]}" ;;
    pacman) opdracht="sudo pacman -S --needed $(eenmaal "${vragen[@]}")" ;;
  esac
  echo "Er ontbreekt: ${namen[*]} — $opdracht" >&2
  return 1
}

# zorg_voor PHASE...: sees to it that what they need is there.
zorg_voor() {
  local pakketten dingen
  lees_benodigd "$@"
  if command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; then
    zorg_met_apt
  else
    zorg_elders
  fi
}

# mag_bouwen PRESET: whether its folder is ours to write and of this tree. One
# that was built at another place is made anew.
mag_bouwen() {
  local map="build/$1" ding thuis
  for ding in "$map/.ninja_log" "$map/CMakeCache.txt" "$map/bin" "$map" build .; do
    [ -e "$ding" ] || continue
    if [ ! -w "$ding" ]; then
      echo "In $PWD/${ding#.} mag u niet schrijven; maak een kopie van de map die van uzelf is en begin daar." >&2
      return 1
    fi
    # Folders above a folder of our own are of no concern.
    [ "$ding" = "$map" ] && break
  done
  [ -e "$map/CMakeCache.txt" ] || return 0
  thuis=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$map/CMakeCache.txt")
  [ "$thuis" -ef . ] && return 0
  echo "$map is gebouwd in $thuis en wordt opnieuw gemaakt." >&2
  rm -rf "$map"
}

# stel_in PRESET [OPTION...]: configures; all that cmake has to say goes into the
# folder, and is shown where it fails.
stel_in() {
  local map="build/$1"
  mkdir -p "$map"
  echo "Het bouwen wordt voorbereid ($map)" >&2
  cmake --preset "$@" >"$map/voorbereiding.log" 2>&1 && return 0
  cat "$map/voorbereiding.log" >&2
  echo "Het voorbereiden lukt niet; hierboven staat waarom." >&2
  return 1
}

# Shows ninja's progress: on a terminal in one line that changes, elsewhere a line
# for each twentieth part. What the compiler says passes.
voortgang() {
  local regel stand klaar alle deel vorige=-1 opnieuw=""
  while IFS= read -r regel; do
    case $regel in
      "ninja: Entering directory"* | "ninja: no work to do.") continue ;;
      "["*/*"] "*)
        stand=${regel%%]*}
        stand=${stand#[}
        klaar=${stand%/*} alle=${stand#*/}
        if [ -t 2 ]; then
          printf '\r\033[KBouwen: %s van %s' "$klaar" "$alle" >&2
          opnieuw=$'\n'
        else
          deel=$((klaar * 20 / alle))
          [ "$deel" -gt "$vorige" ] && echo "Bouwen: $klaar van $alle" >&2
          vorige=$deel
        fi
        continue
        ;;
    esac
    printf '%s%s\n' "$opnieuw" "$regel" >&2
    opnieuw=""
  done
  printf '%s' "$opnieuw" >&2
}

# bouw PRESET TARGET...: builds, with all output on standard error.
bouw() {
  local map="build/$1"
  shift
  NINJA_STATUS="[%f/%t] " ninja -C "$map" "$@" 2>&1 | voortgang
}

# scenes: the raw values of all scenes, from the table.
scenes() {
  sed -nE 's/^(VLAK|DRIE)\(([a-z]+),.*/\2/p' worlds/Scenes.def
}

# afstand WORD OTHER: how many letters to add, drop or change in one to get the other.
afstand() {
  local een=$1 ander=$2 i j kost vorige rij=()
  for ((j = 0; j <= ${#ander}; ++j)); do rij[j]=$j; done
  for ((i = 1; i <= ${#een}; ++i)); do
    vorige=("${rij[@]}")
    rij[0]=$i
    for ((j = 1; j <= ${#ander}; ++j)); do
      kost=1
      [ "${een:i-1:1}" = "${ander:j-1:1}" ] && kost=0
      rij[j]=$((vorige[j - 1] + kost))
      [ $((vorige[j] + 1)) -lt "${rij[j]}" ] && rij[j]=$((vorige[j] + 1))
      [ $((rij[j - 1] + 1)) -lt "${rij[j]}" ] && rij[j]=$((rij[j - 1] + 1))
    done
  done
  echo "${rij[-1]}"
}
