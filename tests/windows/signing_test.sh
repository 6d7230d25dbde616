#!/usr/bin/env bash
# tests/windows/signing_test.sh BUILD: makes the packages once more with a certificate of its own, and verifies what is signed. BUILD is
# build/windows. Exit 77: there is no package.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=$1
shopt -s nullglob
packages=("$build"/package/*.msi)
((${#packages[@]})) || { echo "no package: packaging/windows/build makes it"; exit 77; }

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
openssl req -x509 -newkey rsa:2048 -sha256 -days 30 -nodes -subj "/CN=Carvelot's test" -addext extendedKeyUsage=codeSigning \
    -keyout "$scratch/key.pem" -out "$scratch/certificate.pem" 2>/dev/null
printf 'not secret' >"$scratch/password"
openssl pkcs12 -export -inkey "$scratch/key.pem" -in "$scratch/certificate.pem" -passout "file:$scratch/password" \
    -out "$scratch/certificate.p12"

CARVELOT_SIGN_P12=$scratch/certificate.p12 CARVELOT_SIGN_PASSWORD_FILE=$scratch/password \
    CARVELOT_PACKAGE_FOLDER=$scratch/package packaging/windows/pack

verify() { osslsigncode verify -CAfile "$scratch/certificate.pem" -in "$1" >"$scratch/said" 2>&1; }
(cd "$scratch" && cmake -E tar xf package/*.zip)
signed=("$scratch"/package/*.{exe,msi} "$scratch"/carvelot-*/*.{exe,dll} "$scratch"/carvelot-*/*/*.dll)
((${#signed[@]} > 8))
for file in "${signed[@]}"; do
    verify "$file" || { cat "$scratch/said"; echo "failed: the signature of $(basename "$file")"; exit 1; }
done
echo "ok: ${#signed[@]} files are signed"

# One byte of it changed, a file is signed no more; and what was made without a certificate is not.
for file in "$scratch"/package/*-setup.exe "$scratch"/carvelot-*/carvelot.exe; do
    cp "$file" "$scratch/spoilt.exe"
    printf 'X' | dd of="$scratch/spoilt.exe" bs=1 seek=5000 conv=notrunc status=none
    if cmp -s "$file" "$scratch/spoilt.exe"; then printf 'Y' | dd of="$scratch/spoilt.exe" bs=1 seek=5000 conv=notrunc status=none; fi
    ! verify "$scratch/spoilt.exe" || { echo "failed: a spoilt $(basename "$file") passes"; exit 1; }
done
for file in "$build"/package/*.{exe,msi}; do
    ! verify "$file" || { echo "failed: $(basename "$file") is signed without a certificate"; exit 1; }
done
echo "ok: what was changed, or was not signed, does not pass"
