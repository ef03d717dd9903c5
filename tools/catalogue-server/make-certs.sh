#!/usr/bin/env bash
# make-certs.sh FOLDER NAME...: a certificate authority of its own and a server certificate for the names, into FOLDER:
#   ca.pem      what a client has to trust        server.pem, server.key   what the server shows
# Valid for 30 days. Does nothing when FOLDER already holds certificates for exactly these names that last another day. The keys
# are worth nothing: nobody but a private world trusts this authority. Never commit the folder.
set -euo pipefail
[ $# -ge 2 ] || { sed -n '2,5s/^# //p' "$0" >&2; exit 2; }
folder="$1"
shift
names="$*"

if [ -f "$folder/names" ] && [ "$(cat "$folder/names")" = "$names" ] \
   && openssl x509 -in "$folder/server.pem" -noout -checkend 86400 >/dev/null 2>&1; then
  exit 0
fi

rm -rf "$folder"
mkdir -p "$folder"
chmod 700 "$folder"
cd "$folder"
trap 'cat openssl.log >&2' ERR

new_key() { openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -out "$1" 2>>openssl.log; }

new_key ca.key
openssl req -x509 -new -key ca.key -days 30 -subj "/CN=Private world authority" \
  -addext "basicConstraints=critical,CA:TRUE" -addext "keyUsage=critical,keyCertSign,cRLSign" -out ca.pem 2>>openssl.log

new_key server.key
openssl req -new -key server.key -subj "/CN=$1" -out server.csr 2>>openssl.log
{
  echo "basicConstraints=CA:FALSE"
  echo "extendedKeyUsage=serverAuth"
  printf 'subjectAltName='
  printf 'DNS:%s,' "$@" | sed 's/,$/\n/'
} > server.ext
openssl x509 -req -in server.csr -CA ca.pem -CAkey ca.key -CAcreateserial -days 30 -extfile server.ext -out server.pem 2>>openssl.log
rm -f server.csr server.ext ca.srl openssl.log
printf '%s' "$names" > names
