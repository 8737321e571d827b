#!/bin/sh
# Every include of a subsystem's header points down the layers: a file of
# src/FOLDER or tests/FOLDER includes headers of FOLDER and of the folders
# below it, never of one above. Every folder of src/ is a listed subsystem,
# and every listed subsystem has its folder.
#   check_layering.sh ROOT SUBSYSTEM...   (the subsystems bottom-up)
# Prints each include that points up and exits 1 when there is one.
root=$1
shift
[ -d "$root/src" ] || { echo "no src folder under '$root'" >&2; exit 2; }
order=" $* "
status=0
for folder in "$@"; do
  [ -d "$root/src/$folder" ] || { echo "$folder is listed but src/$folder does not exist"; status=1; }
done
for path in "$root"/src/*/; do
  folder=$(basename "$path")
  case "$order" in *" $folder "*) ;; *) echo "src/$folder is not in the subsystem list"; status=1 ;; esac
done
files=$(cd "$root" && for folder in "$@"; do
  for top in src tests; do
    [ -d "$top/$folder" ] && find "$top/$folder" -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.c' \)
  done
done | sort)
if [ -n "$files" ]; then
  # shellcheck disable=SC2086
  (cd "$root" && awk -v order="$*" '
    BEGIN { n = split(order, names, " "); for (i = 1; i <= n; ++i) rank[names[i]] = i }
    FNR == 1 { split(FILENAME, parts, "/"); own = parts[2] }
    /^[ \t]*#[ \t]*include[ \t]*"[^"\/]+\// {
      target = $0
      sub(/^[^"]*"/, "", target)
      sub(/\/.*/, "", target)
      if ((target in rank) && rank[target] > rank[own]) {
        printf "%s:%d includes a header of %s, a layer above %s\n", FILENAME, FNR, target, own
        bad = 1
      }
    }
    END { exit bad }' $files) || status=1
fi
exit $status
