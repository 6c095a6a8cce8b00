#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The Ansible collection against three simulated shops and one recorder that
# does not answer: a check run changes nothing but reports what would
# change, a real run changes it, a second run changes nothing, the dead
# recorder fails alone, and a bad module argument touches nothing.
#   playbook-test.sh BIN-DIR SOURCE-DIR
set -euo pipefail
bin=$1 source=$2
work=$(mktemp -d)
sim=
cleanup() {
    [ -z "$sim" ] || kill "$sim" 2>/dev/null || true
    [ -n "${KEEP:-}" ] || rm -rf "$work"
}
trap cleanup EXIT
cd "$work"
export PATH=$bin:$PATH ANSIBLE_COLLECTIONS_PATH=$source/ansible ANSIBLE_HOME=$work/ansible-home
export ANSIBLE_NOCOLOR=1 ANSIBLE_RETRY_FILES_ENABLED=0 ANSIBLE_LOCALHOST_WARNING=0
export ANSIBLE_INVENTORY_UNPARSED_WARNING=0 ANSIBLE_FORCE_COLOR=0 ASAN_OPTIONS=detect_leaks=0
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

printf 's3cret\n' >admin.txt
make-krp-package update.KRP --version 2.0.0.0 --component 2:2.0.0.0:64K >/dev/null
mkdir firmware
mkfifo announced
recorder-sim --listen 127.0.0.1:0 --record dvr --count 3 --admin-password-file admin.txt \
    --firmware-dir firmware >announced 2>sim.log &
sim=$!
mapfile -t ports < <(head -n 3 announced | sed 's/^listening on 127.0.0.1://')
[ ${#ports[@]} -eq 3 ] || { echo "FAIL: the simulator did not start"; exit 1; }
# Clocks far off, so that the clock task has work to do.
for port in "${ports[@]}"; do
    REMOTE_SETUP_PASSWORD=s3cret remote-setup-cli --port "$port" set-time 2020-01-01T00:00:00 \
        >/dev/null
done
mkdir backups
cat >inventory.yml <<INVENTORY
recorders:
  vars:
    ansible_host: 127.0.0.1
    recorder_password: s3cret
    backup_dir: $work/backups
    firmware_package: $work/update.KRP
  hosts:
    north: {recorder_port: ${ports[0]}, shop_title: North}
    south: {recorder_port: ${ports[1]}, shop_title: South}
    east: {recorder_port: ${ports[2]}, shop_title: East}
    dead: {recorder_port: 1, shop_title: Nobody}
INVENTORY

play() {
    ansible-playbook -i inventory.yml "$source/tests/ansible/site.yml" "$@" >play.log 2>&1 || true
}
# "changed=N" of a host in the recap.
recap() { sed -n "s/^$1 *: .*$2=\([0-9]*\).*/\1/p" play.log; }
records() { cat dvr.0 dvr.1 dvr.2 | md5sum; }
expect_recap() {
    local run=$1 changed=$2
    for shop in north south east; do
        [ "$(recap $shop failed)" = 0 ] || fail "$run: $shop failed"
        [ "$(recap $shop changed)" = "$changed" ] || fail "$run: $shop changed $(recap $shop changed), not $changed"
    done
    [ "$(recap dead failed)" = 1 ] || fail "$run: the dead recorder did not fail"
}

before=$(records)
play --check --diff
expect_recap "check run" 4
grep -q '^+camera.title\[0\] = North$' play.log || fail "check run: no diff of the title"
[ "$(records)" = "$before" ] || fail "check run: a record changed"
[ -z "$(find backups firmware -type f)" ] || fail "check run: a backup or firmware was written"
cp play.log check.log

play
expect_recap "real run" 4
for k in 0 1 2; do
    title=$(REMOTE_SETUP_PASSWORD=s3cret remote-setup-cli --port "${ports[$k]}" get 'camera.title[0]')
    [ "$title" = "camera.title[0] = \"$(sed -n "$((k + 1))p" <<<$'North\nSouth\nEast')\"" ] \
        || fail "real run: recorder $k holds $title"
done
for shop in north south east; do
    [ "$(stat -c %a "backups/$shop.dat")" = 600 ] || fail "backup of $shop is not 0600"
done
grep -q 's3cret' play.log && fail "the password shows in the output"
[ "$(find firmware -name '*.KRP' | wc -l)" -ge 1 ] || fail "real run: no firmware was received"

play
expect_recap "second run" 0

after=$(records)
play --tags bad
grep -q "no setting is named 'camera.titel\[0\]'" play.log || fail "bad argument: no message"
[ "$(records)" = "$after" ] || fail "bad argument: a record changed"

if [ $failures -gt 0 ]; then
    cat check.log play.log
    exit 1
fi
echo "ansible playbook test passed"
