#!/usr/bin/env bash
# Fails when a folder of src/ includes from one that it may not depend on, or when an example includes
# anything of the library but its public headers.
set -euo pipefail
cd "$(dirname "$0")/.."

declare -A may=(
    [support]="support"
    [net]="support net"
    [ui]="support ui"
    [diagnostics]="support net ui diagnostics"
)
may[model]="${may[diagnostics]} model"
may[core]="${may[model]} core"
may[ads]="${may[core]} ads"
may[plugins]="plugins splash"
for format in splash interstitial feed; do
    may[$format]="${may[ads]} $format"
done

may[qml]="${may[ads]} splash interstitial feed qml"

status=0
complain() { echo "$*"; status=1; }

for folder in $(git ls-files 'src/*/*.cpp' | cut -d/ -f2 | sort -u); do
    for included in $(git ls-files "src/$folder" | grep -E "\.(cpp|h)$" | xargs cat | sed -nE 's|^#include "([a-z]+)/.*|\1|p' | sort -u); do
        [[ " ${may[$folder]:-} " == *" $included "* ]] || complain "src/$folder may not include from $included/"
    done
done
internals=$(git grep -lE '#include "[a-z]+/' -- examples || true)
[ -z "$internals" ] || complain "only <ZNTAds/…> may be included by: $internals"
exit $status
