# SPDX-License-Identifier: MIT
# Sourced by what works in a chroot of a Debian release: makes one, opens it, and closes
# it. All of it needs root.

# wil_beheerder COMMAND PROGRAM...: whether the user is root and the programs are there.
wil_beheerder() {
  local opdracht=$1 programma mist=()
  shift
  if [ "$(id -u)" -ne 0 ]; then
    echo "$opdracht heeft een beheerder nodig: sudo $opdracht" >&2
    return 1
  fi
  for programma in "$@"; do
    command -v "$programma" >/dev/null || mist+=("$programma")
  done
  [ ${#mist[@]} -eq 0 ] && return 0
  echo "Er ontbreekt: ${mist[*]} — apt-get install ${mist[*]}" >&2
  return 1
}

# eigen_ruimte SCRIPT ARGUMENT...: runs the script anew with a table of processes and one of
# mounts of its own. The tests see no program of the machine, and nothing outlives the script.
eigen_ruimte() {
  [ -z "${BRIXTEL_EIGEN_RUIMTE:-}" ] || return 0
  BRIXTEL_EIGEN_RUIMTE=1 exec unshare --mount --pid --fork --mount-proc --kill-child "$@"
}

# open_chroot FOLDER: gives it what programs expect of a system that runs.
open_chroot() {
  local map
  for map in proc sys; do mount --rbind --make-rslave "/$map" "$1/$map"; done
  mkdir -p "$1/dev/shm" "$1/dev/pts"
  mount -t tmpfs tmpfs "$1/dev/shm"
  # Terminals of its own: the machine's cannot be opened from a chroot.
  mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts "$1/dev/pts"
  ln -sfn pts/ptmx "$1/dev/ptmx"
  cp /etc/resolv.conf "$1/etc/resolv.conf"
}

# in_systeem FOLDER COMMAND...: runs the command with the folder as its root, as a system that
# was started there: Linux refuses a namespace of users to what a chroot holds.
in_systeem() {
  unshare --mount sh -euc '
    mount --rbind "$1" "$1"
    cd "$1"
    mkdir -p .oud
    pivot_root . .oud
    umount -l /.oud
    shift
    exec "$@"
  ' sh "$@"
}

# sluit_chroot FOLDER: takes that away again.
sluit_chroot() {
  local map
  for map in dev/pts dev/shm proc sys; do
    if mountpoint -q "$1/$map"; then umount -R "$1/$map"; fi
  done
}
