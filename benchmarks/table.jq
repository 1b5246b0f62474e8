# Prints the Markdown table of all rows from Google Benchmark's JSON. $one and $two are the results
# at scales 1 and 2, $core and $widgets are the sizes of the stripped libraries in KiB.

def found($results; $name):
  [$results[0].benchmarks[] | select(.run_name | . == $name or startswith($name + "/"))]
  | ([.[] | select(.aggregate_name == "median")] + [.[] | select(.run_type == "iteration")])[0]
  | if . == null then error("no result for " + $name)
    elif .error_occurred then error($name + ": " + .error_message)
    else . end;
def counter($name; $key): found($one; $name)[$key];
# Processor time only, because nothing waits in these rows.
def time($name): found($one; $name).cpu_time;

def number: if . >= 100 then round elif . >= 10 then . * 10 | round / 10 else . * 100 | round / 100 end
  | tostring;
def with($unit): number + " " + $unit;

# upTo and most limit the measured figure, more limits its difference to the floor, and times and
# least limit its ratio to the floor.
def row($what; $unit; $measured; $floor; $goal):
  (if $floor then $measured / $floor else null end) as $ratio
  | ([if $goal.upTo then "at most \($goal.upTo) \($unit)" else empty end,
      if $goal.most then "under \($goal.most) \($unit)" else empty end,
      if $goal.more then "at most \($goal.more) \($unit) more" else empty end,
      if $goal.times then "at most \($goal.times) x" else empty end,
      if $goal.least then "at least \($goal.least) x" else empty end] | join(", ")) as $text
  | (($goal.upTo == null or $measured <= $goal.upTo) and
     ($goal.most == null or $measured < $goal.most) and
     ($goal.more == null or $measured - $floor <= $goal.more) and
     ($goal.times == null or $ratio <= $goal.times) and
     ($goal.least == null or $ratio >= $goal.least)) as $met
  | [$what, ($measured | with($unit)), (if $floor then $floor | with($unit) else "" end),
     (if $floor and ($goal.times or $goal.least) then $ratio | number else "" end),
     $text, (if $text == "" then "" elif $met then "met" else "**missed**" end)];

def frames($results; $scale):
  (found($results; "surveyFrames")) as $frames
  | (found($results; "fillWindowOnce").real_time) as $floor
  | [["entry", "the entry"], ["page", "a page change"], ["finish", "the change to the finish page"],
     ["dismiss", "the dismissal"]][]
  | row("frames of \(.[1]), scale \($scale), median"; "ms"; $frames[.[0] + "_median"]; $floor; {most: 8}),
    row("the same, 95th percentile"; "ms"; $frames[.[0] + "_p95"]; $floor; {most: 8});

def present($results; $scale):
  row("`presentSurvey` over 97 widgets to the first frame, scale \($scale)"; "ms";
      found($results; "present").median; found($results; "presentDialog").median; {most: 16});

# The amount that the library adds to a host; the floor is the host without the library.
def added($what; $suffix; $key; $unit; $goal):
  counter("idle/configured" + $suffix; $key) as $with
  | counter("idle/bare" + $suffix; $key) as $without
  | row($what; $unit; $with - $without; $without; $goal);

def track($when; $part; $what; $goal):
  row($what; "µs"; counter("track/" + $when; $part); counter("postEmptyBlock/" + $when; $part); $goal);

# For large states, the floor includes $making, the least time for producing the text.
def state($limit; $what; $making; $savingGoal):
  row("encoding \($what)"; "µs"; time("encodeState/" + $limit); time("writeStateAsText/" + $limit);
      {times: 2}),
  row("saving \($what), calling thread"; "µs"; counter("save/" + $limit; "caller"); null; {most: 20}),
  row("saving \($what), whole"; "µs"; counter("save/" + $limit; "whole");
      counter("save/" + $limit; "floor") + $making; {times: $savingGoal}),
  row("loading \($what)"; "µs"; time("loadState/" + $limit); time("readAndParseState/" + $limit);
      {times: 2}),
  row("draining \($what)"; "records/s"; counter("drain/" + $limit; "per_second");
      counter("postBare/" + $limit; "per_second"); {least: 0.8});

def rows:
  track("busy"; "median"; "`track` without a handler, queue busy, median"; {most: 5}),
  track("busy"; "p99"; "the same, 99th percentile"; {most: 50}),
  track("asleep"; "median"; "`track` that wakes the library, median"; {times: 4}),
  track("asleep"; "p99"; "the same, 99th percentile"; {times: 4}),
  (["busy", "queue busy"], ["asleep", "that wakes the library"]
   | row("`track` \(.[1]), prompt saves, median; floor without"; "µs";
         counter("track/" + .[0] + "_saving"; "median"); counter("track/" + .[0]; "median");
         {more: 1})),
  track("asleep"; "processor"; "processor time per tracked event, one per ms"; {most: 300}),
  row("disk syncs per 1,000 of these events"; "syncs"; 1000 * counter("track/asleep"; "syncs"); null;
      null),
  row("latest frame of a host that animates while 100 events are sent"; "ms";
      counter("animate/tracking"; "max"); counter("animate/bare"; "max"); {most: 4}),
  row("`configure`, first call"; "µs"; counter("configure"; "median"); counter("readFile"; "median");
      {most: 3000}),
  row("decoding a survey of 3 KB"; "µs"; time("decodeSurvey/3000"); time("parseSurvey/3000");
      {most: 100}),
  row("decoding the largest survey, 10 MiB"; "ms"; time("decodeSurvey/10485760") / 1000;
      time("parseSurvey/10485760") / 1000; {most: 250}),
  state("25"; "a full state"; 0; 1.2),
  state("10000"; "10,000 records of a kind"; time("writeStateAsText/10000"); 2),
  present($one; 1), present($two; 2),
  row("the same over 1,000 widgets, scale 2"; "ms"; found($two; "presentOverMany").median; null;
      {most: 50}),
  frames($one; 1), frames($two; 2),
  added("memory, host with a request of its own"; "_online"; "KiB"; "KiB"; {most: 3072}),
  added("memory, host without"; ""; "KiB"; "KiB"; {most: 3072}),
  row("the same over HTTPS"; "KiB"; counter("idleOverHTTPS"; "KiB") - counter("idle/bare"; "KiB");
      counter("idle/bare"; "KiB"); {most: 6144}),
  added("threads"; ""; "threads"; "threads"; {upTo: 2}),
  added("wake-ups in an idle minute"; ""; "wakeUps"; "wake-ups"; {upTo: 0}),
  row("stripped Core"; "KiB"; $core; null; {most: 450}),
  row("stripped Widgets"; "KiB"; $widgets; null; {most: 350}),
  (["answers", 300], ["refuses", 300], ["silent", 1000]
   | row("quitting after 1,000 calls, service \(.[0])"; "ms"; counter("quit/" + .[0]; "max");
         counter("quit/bare"; "max"); {most: .[1]}));

["Row", "Measured", "Floor", "Ratio", "Goal", ""], ["---", "---", "---", "---", "---", "---"], rows
| "| " + join(" | ") + " |"
