# Sourced: asks a Prometheus of this machine.
#
#   query PORT PROMQL      prints the answer to an instant query, one object a line: labels and `value`
#   series                 the same from samples or objects, in one order: sorted lines LABELS => VALUE

# What the jq side of questions.txt may use.
jq_terms='
  def state: if .text == null then "unknown" elif .judgement == "fine" then "ok" else .judgement end;
  def flag: if . then 1 else 0 end;
'

query() {
  curl -sS --max-time 30 --data-urlencode "query=$2" "http://127.0.0.1:$1/api/v1/query" |
    jq -c 'if .status != "success" then error(.error) else .data.result[] end |
      .metric + {value: (.value[1] | tonumber)}'
}

series() {
  jq -r '(del(.value, .__name__, .job, .instance) | to_entries | sort_by(.key) |
    map(select(.value != null and .value != "") | "\(.key)=\(.value)") | join(" ")) +
    " => \(.value | tostring)"' | LC_ALL=C sort
}
