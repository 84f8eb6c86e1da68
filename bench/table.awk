# The table that bench/run prints, from the numbers that the program leaves: a row for each operation.
#
# The file has one member per line; an entry's name ("list/50/ours/real_time_median", of the operation
# "list/50" and the peer "ours") comes first.
BEGIN {
  FS = "\""
  peers = split("ours params soci rowset pqxx pqxx-names", peer, " ")
}

$2 == "name" {
  parts = split($4, part, "/")
  is_median = part[parts] == "real_time_median"
  side = part[parts - 1]
  operation = substr($4, 1, length($4) - length("/" side "/" part[parts]))
  if (is_median) operations[operation]
}
is_median && $3 ~ /^: [0-9]/ { value[operation, side, $2] = substr($3, 3) + 0 }

# The value, or nothing where the peer leaves the operation out.
function shown(operation, side, what) {
  return (operation, side, what) in value ? sprintf("%.0f", value[operation, side, what]) : "-"
}

function ratio(operation, side, what, reference) {
  reference = value[operation, "prepared", what]
  return (operation, side, what) in value && reference ? \
    sprintf("%.2f", value[operation, side, what] / reference) : "-"
}

function width(name) {
  return length(name) < 6 ? 6 : length(name)
}

function row(operation, i, text) {
  text = sprintf("%-16s %9s %9s ", operation, shown(operation, "prepared", "real_time"),
    shown(operation, "ours", "real_time"))
  for (i = 1; i <= peers; ++i) text = text sprintf(" %*s", width(peer[i]), ratio(operation, peer[i], "real_time"))
  return text sprintf("  %8s %8s %5s  %8s %8s  %4s/%-4s %3s",
    shown(operation, "prepared", "cpu_time"), shown(operation, "ours", "cpu_time"),
    ratio(operation, "ours", "cpu_time"), shown(operation, "prepared", "allocations"),
    shown(operation, "ours", "allocations"), shown(operation, "prepared", "round_trips"),
    shown(operation, "ours", "round_trips"), shown(operation, "ours", "hot_percent"))
}

END {
  printf "%-16s %-19s  %-45s  %-23s  %-17s  %-9s %3s\n", "", "wall, microseconds",
    "wall / that of prepared", "CPU, microseconds", "allocations", "trips", "HOT"
  printf "%-16s %9s %9s ", "operation", "prepared", "ours"
  for (i = 1; i <= peers; ++i) printf " %*s", width(peer[i]), peer[i]
  printf "  %8s %8s %5s  %8s %8s  %4s/%-4s\n", "prepared", "ours", "ratio", "prepared", "ours",
    "prep", "ours"
  fflush()
  for (operation in operations) print row(operation) | "sort --version-sort"
}
