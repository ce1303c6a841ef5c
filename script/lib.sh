# Shell functions that the programs of script/ share. Source it; it runs nothing.
# shellcheck shell=bash disable=SC2034

root_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# Debian packages by purpose. The library itself needs the compiler alone; {fmt}, CLI11,
# the JSON library, SQLite, OpenSSL's digests, the line editor, the catalogs of messages and those
# that draw belong to the register and the console, Boost to the door, GoogleTest and the reader of barcodes to the tests.
build_packages=(g++ cmake ninja-build pkg-config python3 libfmt-dev libcli11-dev nlohmann-json3-dev
  libcairo2-dev libpango1.0-dev libpng-dev libzint-dev libsqlite3-dev libssl-dev libedit-dev gettext libboost1.81-dev
  libcurl4-openssl-dev libgtest-dev libgmock-dev librapidcheck-dev zbar-tools curl openssl
  python3-pytest python3-hypothesis python3-jsonschema nodejs)
windows_packages=(g++-mingw-w64-x86-64-posix googletest wine wine64)
windows32_packages=(g++-mingw-w64-i686-posix)
# By their numbers: the packages without are in each other's way.
m32_packages=(g++-12-multilib googletest)
arm64_packages=(g++-12-aarch64-linux-gnu qemu-user googletest)
check_packages=(binutils python3 python3-venv python3-pip python3-setuptools python3-wheel shellcheck
  clang-format clang-tidy cppcheck codespell mono-mcs mono-runtime fp-compiler)
bench_packages=(libbenchmark-dev libcpp-httplib-dev libinih-dev libboost1.81-dev libspdlog-dev nlohmann-json3-dev
  python3-matplotlib rapidjson-dev)
coverage_packages=(gcovr)
memory_packages=(valgrind)
packaging_packages=(dpkg-dev lintian mmdebstrap)
# A page in a browser that asks the door.
browser_packages=(chromium chromium-driver python3-selenium)
fuzz_packages=(clang-14 libfuzzer-14-dev)

say() { printf '%s\n' "$*"; }

die() {
  printf 'script/%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# The processor time of this shell and of all its children that ended, in hundredths of a second.
# A child that puts itself into the background, as the server of Wine does, is not among them.
read_processor_time() {
  local stat fields
  read -r stat < "/proc/$$/stat"
  # Behind the name, which may hold anything: the 12th and 13th are the shell's own times, user and
  # system, the 14th and 15th those of its children.
  read -r -a fields <<< "${stat##*) }"
  processor_user=$((fields[11] + fields[13]))
  processor_system=$((fields[12] + fields[14]))
}

# run_step NAME COMMAND...: says what is done, shows the command, runs it, and says what it cost. Its
# status is that of the command.
run_step() {
  local name=$1
  shift
  printf '\n== %s\n+ %s\n' "$name" "$*"
  local begin=$SECONDS status=0 user system
  read_processor_time
  user=$processor_user system=$processor_system
  "$@" </dev/null || status=$?
  if ((status != 0)); then return "$status"; fi
  read_processor_time
  printf -- '-- %s: done in %d s, with %d s of processor time (user %d, system %d)\n' "$name" \
    "$((SECONDS - begin))" "$(((processor_user - user + processor_system - system) / 100))" \
    "$(((processor_user - user) / 100))" "$(((processor_system - system) / 100))"
}

# step NAME COMMAND...: a failure names the step and ends the program.
step() { run_step "$@" || fail_step "$1" $?; }

fail_step() {
  printf '\nscript/%s: FAILED at step "%s" (exit status %d)\n' "${0##*/}" "$1" "$2" >&2
  exit 1
}

# What this machine could not do, by the names of the steps.
left_out=()

# step_if_possible NAME COMMAND...: the same, but for the exit status 77. That says that this machine
# cannot do it: the step joins left_out.
step_if_possible() {
  local status=0
  run_step "$@" || status=$?
  if ((status == 77)); then
    printf '\nscript/%s: NOT RUN HERE: %s\n' "${0##*/}" "$1" >&2
    left_out+=("$1")
  elif ((status != 0)); then
    fail_step "$1" "$status"
  fi
}

package_is_installed() {
  [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# Runs a command as root: as it is when we are root, else through sudo.
as_root() {
  if ((EUID == 0)); then
    "$@"
  else
    sudo "$@"
  fi
}

package_lists_are_fresh=

# install_packages NAME...: installs those of the named Debian packages that are missing.
install_packages() {
  command -v dpkg-query >/dev/null ||
    die "this is no Debian system; install by its own means what these packages hold: $*"
  local name missing=()
  for name in "$@"; do
    package_is_installed "$name" || missing+=("$name")
  done
  if ((${#missing[@]} == 0)); then
    return 0
  fi
  if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    die "these packages are missing and only root can install them (there is no sudo): run
  apt-get update && apt-get install ${missing[*]}
as root, then start again"
  fi
  if [[ -z $package_lists_are_fresh ]]; then
    step "Refresh the package lists" as_root apt-get update -q
    package_lists_are_fresh=yes
  fi
  step "Install the Debian packages ${missing[*]}" \
    as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# keep_output FILE COMMAND...: runs it, and FILE has what it printed.
keep_output() {
  local file=$1
  shift
  "$@" 2>&1 | tee "$file"
}

# collect_counts PLACE FILE: the lines "COUNT name value goal" of a program's output, for the table at
# the end of script/test, which names their file in LORIMAT_COUNTS. Without one nothing is collected.
collect_counts() {
  local place=$1 file=$2
  if [[ -n ${LORIMAT_COUNTS-} ]]; then
    sed -n "s/\r\$//; s/^COUNT /$place COUNT /p" "$file" >> "$LORIMAT_COUNTS"
  fi
}

# test_preset PRESET SECONDS: runs the tests of build/PRESET; one may take so long.
test_preset() {
  step "Test the preset $1" ctest --preset "$1" -j2 --no-tests=error --timeout "$2"
  collect_counts "$1" "build/$1/Testing/Temporary/LastTest.log"
}

# build_preset PRESET [TARGET...]: configures and builds into build/PRESET.
build_preset() {
  local preset=$1 target targets=()
  shift
  for target in "$@"; do targets+=(--target "$target"); done
  step "Configure the preset $preset" cmake --preset "$preset"
  step "Build the preset $preset" \
    cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}"
}

cd "$root_dir" || exit 1
