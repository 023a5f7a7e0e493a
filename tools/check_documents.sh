#!/usr/bin/env bash
# Links, pictures and commands of the documents; manual pages; what shops show.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
python3 -B tests/documents_test.py
for page in docs/*.[1-9]; do
    mandoc -T lint "$page"
done
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
sed 's,@KESTRY_SITE@,https://kestry.org,' packaging/org.kestry.Kestry.metainfo.xml \
    >"$place/org.kestry.Kestry.metainfo.xml"
appstreamcli validate --no-net "$place/org.kestry.Kestry.metainfo.xml"
desktop-file-validate packaging/*.desktop
