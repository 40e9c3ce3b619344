# Sourced by the commands beside it: installs the Debian packages that are missing, and only those.
# With nothing missing it needs no root.

build_packages="g++ cmake make libcli11-dev nlohmann-json3-dev googletest"
test_packages="$build_packages g++-multilib libnspr4-dev libnspr4:i386 pkg-config python3"

is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null | head -c 9)" = installed ]
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# install_missing detect|test
install_missing() {
  local wanted missing=""
  case "$1" in
    detect) wanted=${build_packages/ googletest/} ;;
    test) wanted=$test_packages ;;
  esac
  for package in $wanted; do
    is_installed "$package" || missing="$missing $package"
  done
  [ -z "$missing" ] && return 0
  echo "installing:$missing" >&2
  case "$missing" in *:i386*) as_root dpkg --add-architecture i386 ;; esac
  # A mirror in the middle of an update fails for some lists; what is needed may be there all the same.
  as_root apt-get update -qq || echo "some package lists could not be read; going on" >&2
  # shellcheck disable=SC2086
  DEBIAN_FRONTEND=noninteractive as_root apt-get install -y -qq --no-install-recommends $missing
}
