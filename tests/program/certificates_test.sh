#!/usr/bin/env bash
# Trusts a rejected certificate, rejects it again, and makes a new application certificate, which
# openssl then reads.
. "$(dirname "$0")/harness.sh"

make_server
pki=$work/server/pki
cp -r "$pki" "$work/before"
own=pki/own/certs/sampleserver.der
key=$work/server/pki/own/private/sampleserver.pem
rejected() { ls "$pki/rejected" | wc -l; }
same_files() { diff -r "$pki" "$work/before"; }

# The public key in a certificate or private key of the server, as openssl reads it.
key_of_certificate() { openssl x509 -inform DER -in "$work/server/$own" -noout -pubkey; }
key_of_private_key() { openssl pkey -in "$key" -pubout; }
# The names of the subject, one on a line.
subject() { openssl x509 -inform DER -in "$1" -noout -subject -nameopt multiline | tail -n +2 | sort; }
belong_together() { [ "$(key_of_certificate)" = "$(key_of_private_key)" ]; }

start -f "$file"
main=$(main_window)
click "$main" certificates
click "$main" certificates_list

# The first untrusted certificate, found by the first letter of its status. The menu's first entry
# that is enabled is Trust.
count=$(rejected)
press "$main" u Menu
xdotool key --clearmodifiers --delay 100 Down Return
fewer() { [ "$(rejected)" = $((count - 1)) ]; }
wait_for fewer
moved=$(comm -13 <(ls "$pki/rejected") <(ls "$work/before/rejected"))
cmp "$pki/trusted/certs/$moved" "$work/before/rejected/$moved" || fail "$moved has changed"

# It is still the current one; now the first enabled entry is Reject.
press "$main" Menu
xdotool key --clearmodifiers --delay 100 Down Return
wait_for same_files

# Nothing opens certificates here; the double click does nothing, and the console goes on.
xdotool click --repeat 2 --delay 50 1

# A new certificate with what the old one says, and with the state, which that one lacks.
old_key=$(key_of_certificate)
old_mode=$(stat -c '%a %U' "$key")
click "$main" create_certificate
dialog=$(window '^New Application Instance Certificate$')
press "$dialog" $(tabs 3)
write "$dialog" Illinois
press "$dialog" Return
wait_for gone "$dialog"
renewed() { [ "$(key_of_certificate)" != "$old_key" ]; }
wait_for renewed
wait_for belong_together
expect "$(subject "$work/server/$own" | grep -v stateOrProvinceName)" \
    "$(subject "$work/before/own/certs/sampleserver.der")"
expect "$(subject "$work/server/$own" | sed -n 's/^ *stateOrProvinceName *= //p')" Illinois
expect "$(stat -c '%a %U' "$key")" "$old_mode"
expect "$(stat -c %a "$key")" 600
head -n 1 "$key" | grep -q 'BEGIN RSA PRIVATE KEY' || fail "the key has another form"
openssl pkey -in "$key" -check -noout >/dev/null || fail "the key is not sound"
openssl x509 -inform DER -in "$work/server/$own" -out "$work/own.pem"
openssl verify -check_ss_sig -CAfile "$work/own.pem" "$work/own.pem" >/dev/null ||
    fail "the certificate is not signed by its own key"
expect "$(ls "$(dirname "$key")" "$pki/own/certs" | grep -c sampleserver)" 2

close_window "$main"
ends_with 0
