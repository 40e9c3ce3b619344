#!/usr/bin/env bash
# From plain UTF-8 texts to a folder that `orva detect --models` takes.
#   examples/build_models.sh OUT_DIR LANGUAGE=TEXT...      e.g.  models fr=french.txt ru=russian.txt
# Each language is trained in UTF-8 and in one older charset; the two share their values where they can.
set -eu
orva=${ORVA:-$(dirname "$0")/../build/bin/orva}
out=$1; shift
mkdir -p "$out"
: > "$out/facts.txt"
for pair in "$@"; do
  language=${pair%%=*} text=${pair#*=}
  case $language in ru|uk|bg|be|mk|sr) old=windows-1251 ;; pl|cs|sk|hu|ro|hr|sl) old=windows-1250 ;;
                    el) old=windows-1253 ;; tr) old=windows-1254 ;; *) old=windows-1252 ;; esac
  for charset in UTF-8 $old; do
    "$orva" train -o "$out/$language$charset.tri" --weight 0.99 --charset $charset "$text"
  done
  printf '%sUTF-8\t%s%s\n' "$language" "$language" "$old" >> "$out/facts.txt"
done
"$orva" group -o "$out/Model.grp" --facts "$out/facts.txt" --stc "$out/Model.stc" "$out"/*.tri
