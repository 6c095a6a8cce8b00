#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds both Debian packages from this build tree, checks their control
# fields and what lintian says of them, unpacks them into a temporary root
# and runs the programs there: they must find their data files in the
# unpacked tree, and the installed documents must find what they link to.
#   debs-test.sh CPACK-CONFIG VERSION CHANGELOG
set -euo pipefail
config=$1 version=$2 changelog=$3
work=$(mktemp -d)
sim=
cleanup() {
    [ -z "$sim" ] || kill "$sim" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

cpack --config "$config" -B "$work/out" >"$work/cpack.log" 2>&1 || {
    cat "$work/cpack.log"
    exit 1
}
cli_deb=$(echo "$work"/out/remote-setup-cli_*.deb)
client_deb=$(echo "$work"/out/remote-setup_*.deb)
[ -f "$cli_deb" ] && [ -f "$client_deb" ] || { ls "$work/out"; exit 1; }

field() { dpkg-deb -f "$1" "$2"; }
for deb in "$cli_deb" "$client_deb"; do
    [ "$(field "$deb" Version)" = "$version" ] || fail "$deb: version $(field "$deb" Version)"
    [[ $(field "$deb" Maintainer) == *@* ]] || fail "$deb: no maintainer"
    [[ $(field "$deb" Description) != *$'\n ;'* ]] || fail "$deb: a CMake list as description"
    [[ $(field "$deb" Depends) == *libqt6core6* ]] || fail "$deb: no QtCore in Depends"
done
cli_depends=$(field "$cli_deb" Depends)
client_depends=$(field "$client_deb" Depends)
[[ $cli_depends != *libqt6widgets6* && $cli_depends != *libqt6gui6* ]] \
    || fail "the command line package depends on Qt GUI: $cli_depends"
[[ $cli_depends == *libqt6network6* ]] || fail "no QtNetwork in $cli_depends"
[[ $client_depends == *libqt6widgets6* ]] || fail "no QtWidgets in $client_depends"
[[ $client_depends == *"remote-setup-cli (= $version)"* ]] \
    || fail "the client does not depend on its data package: $client_depends"
[[ $(field "$cli_deb" Recommends) == *bash-completion* ]] \
    || fail "the command line package does not recommend bash-completion"
[ "$(dpkg-parsechangelog -l "$changelog" -S Version)" = "$version" ] \
    || fail "the changelog's last entry is not for $version"

# Lintian errors and warnings are what Debian would refuse or ask about.
# It exits 1 when it found errors, above that when it could not look.
status=0
lintian --tag-display-limit 0 "$cli_deb" "$client_deb" >"$work/lintian.log" 2>&1 || status=$?
if [ $status -gt 1 ]; then
    cat "$work/lintian.log"
    fail "lintian did not run"
fi
! grep -E '^[EW]: ' "$work/lintian.log" || fail "lintian errors or warnings"

root=$work/root
dpkg-deb -x "$cli_deb" "$root"
dpkg-deb -x "$client_deb" "$root"
app=org.remotesetup.RemoteSetup
for f in bin/remote-setup-cli bin/recorder-sim bin/make-krp-package bin/remote-setup \
    share/remote-setup/language.config share/remote-setup/DEFDVRSETUP.DAT \
    share/man/man1/remote-setup-cli.1.gz share/man/man1/recorder-sim.1.gz \
    share/man/man1/remote-setup.1.gz share/man/man1/make-krp-package.1.gz \
    share/bash-completion/completions/remote-setup-cli \
    share/bash-completion/completions/recorder-sim \
    share/doc/remote-setup-cli/user-guide.md \
    share/doc/{remote-setup-cli,remote-setup}/{copyright,changelog.gz} \
    share/applications/$app.desktop share/metainfo/$app.metainfo.xml \
    share/icons/hicolor/scalable/apps/$app.svg \
    share/icons/hicolor/{16x16,24x24,32x32,48x48,64x64,128x128,256x256}/apps/$app.png; do
    [ -f "$root/usr/$f" ] || fail "missing /usr/$f"
done
[ "$(dpkg-deb -c "$client_deb" | grep -c 'usr/bin/remote-setup-cli')" = 0 ] \
    || fail "the client package holds the command line too"

# Every relative link of an installed document leads to an installed file.
while read -r md; do
    while read -r target; do
        target=${target%%#*}
        case $target in '' | *:*) continue ;; esac
        resolved=$(realpath -m "$(dirname "$md")/$target")
        [[ -e $resolved && $resolved == "$root/usr/"* ]] \
            || fail "${md#"$root"} links to $target, which is not installed"
    done < <(grep -oE '\]\([^) ]+' "$md" | cut -c3-)
done < <(find "$root/usr/share/doc" -name '*.md')

bin=$root/usr/bin
for program in remote-setup remote-setup-cli recorder-sim make-krp-package; do
    out=$("$bin/$program" --version) || fail "$program --version failed"
    [ "$out" = "$program $version" ] || fail "$program --version said '$out'"
done

# language.config, from ../share/remote-setup.
out=$("$bin/remote-setup-cli" translate --language 1 Cancel) || fail "translate failed"
[ "$out" = Abbrechen ] || fail "translate without its language file: '$out'"

# DEFDVRSETUP.DAT, from ../share/remote-setup, sent to the unpacked simulator.
"$bin/recorder-sim" --listen 127.0.0.1:0 --record "$work/recorder.dat" \
    >"$work/sim.out" 2>"$work/sim.err" &
sim=$!
for _ in $(seq 100); do
    grep -qs '^listening on' "$work/sim.out" && break
    sleep 0.1
done
port=$(sed -n 's/^listening on .*:\([0-9]*\)$/\1/p' "$work/sim.out")
if [ -z "$port" ]; then
    fail "the unpacked recorder-sim did not listen"
    cat "$work/sim.err"
else
    env -u REMOTE_SETUP_PASSWORD "$bin/remote-setup-cli" --port "$port" --timeout 20 \
        factory-default >"$work/default.log" 2>&1 \
        || { fail "factory-default from the unpacked tree"; cat "$work/default.log"; }
fi
exit $((failures > 0))
