"""The rounds: commands as pages and help texts show them, in the order in which somebody would type them."""


class Step:
    """`command`, and a pattern of what must show then: in what it prints or, when it makes `file`, in that."""

    def __init__(self, command, shows="", file=None, says=None, until_interrupted=False, goes_on=False, own=False):
        self.command, self.shows, self.file = command, shows, file
        # Pattern of the lines that may stand on standard error.
        self.says = says
        # Ends with Ctrl-C, once it has shown what it must; or goes on while the next ones are typed.
        self.until_interrupted, self.goes_on = until_interrupted, goes_on
        # Not of a page: what the reader has at hand.
        self.own = own


def serves(command):
    return Step(command, r"http://127\.0\.0\.1:\d+/", says="http|Ctrl-C|page", until_interrupted=True)


def goes_on(command, shows="", own=False):
    return Step(command, shows, goes_on=True, own=own)


def given(command, says=None):
    return Step(command, own=True, says=says)


TRACKS = given(
    "for name in room front side ip2 ip5 hc3; do (echo '# image 1280x720'; echo t_ms,person_id,left,top,right,bottom; for ((t = 0; t < 20000; t += 100)); do "
    "echo $t,1,$((200 + t / 50)),200,$((280 + t / 50)),300; echo $t,2,900,220,980,320; done) > $name.csv; done; "
    "for name in turns is1008a en2001d es2014c in1012 is1003b; do (echo start_ms,end_ms,speaker; for ((t = 0; t < 360000; t += 8000)); do "
    "echo $t,$((t + 3000)),a; echo $((t + 4000)),$((t + 7000)),b; done) > $name.csv; done")
SETTINGS = given("for name in default a one; do echo persist.fdtimers.groupframe.outside=2000 > $name.conf; done; "
                 "for name in quick b; do echo persist.fdtimers.groupframe.outside=0 > $name.conf; done")
MEETINGS = given("mkdir meetings recordings; for n in 1 2; do prb simulate --seed $n --minutes 1 -o meetings/$n.jsonl; "
                 "prb simulate --seed $n --minutes 1 -o recordings/$n.jsonl.zst; done; "
                 "cp meetings/1.jsonl monday.jsonl; cp meetings/2.jsonl tuesday.jsonl; cp monday.jsonl one.jsonl; cp tuesday.jsonl two.jsonl")
MEETING = given("prb simulate --seed 7 --people 6 --minutes 5 -o meeting.jsonl")
SMALL = given("mkdir small && mv *.jsonl small && mv small/meeting.jsonl . && prb simulate --seed 3 --minutes 1 -o few.jsonl")
SESSION_BUS = goes_on("dbus-daemon --session --nofork --nopidfile --address=$DBUS_SESSION_BUS_ADDRESS --print-address",
                      "unix:path", own=True)
# Its room is the whole broker.
ROOM = [goes_on("productionrulesd --bus mqtt://localhost --log stderr", "connected", own=True),
        goes_on("examples/vision-publisher.py 127.0.0.1 1883 ''", own=True)]

ROUNDS = {
    "newcomer": [
        Step("prb help", "simulate +Make"),
        Step("prb help replay", "Usage: prb replay"),
        Step("prb completion bash > ~/.local/share/bash-completion/completions/prb", "complete .*prb",
             ".local/share/bash-completion/completions/prb"),
        Step("prb completion fish > ~/.config/fish/completions/prb.fish", "complete -c prb", ".config/fish/completions/prb.fish"),
        Step("prb demo --once --fast", "GROUP"),
        serves("prb demo --mode people --people 6 --view"),
        Step("prb demo --preset walking", "GROUP", until_interrupted=True),
        Step("prb simulate --seed 7 --people 6 --minutes 5 -o meeting.jsonl", "ICDOut", "meeting.jsonl"),
        Step("prb demo meeting.jsonl --scenes scenes.jsonl", "GROUP", until_interrupted=True),
        serves("prb view meeting.jsonl"),
        serves("prb view meeting.jsonl --at 02:05"),
        serves("prb view meeting.jsonl --property vendor.talkertracking.flag=4 --port 8080"),
        Step("prb simulate --seed 1 | prb report -", "Head size"),
        Step("prb config example > fyn.conf", "groupframe", "fyn.conf"),
        Step("prb config preset recommended > /etc/fyn.conf", "steadyframing", "fyn.conf"),
        Step("prb config check /etc/fyn.conf", "no faults"),
        Step("prb config check /etc/fyn.conf --mode people", "no faults"),
        Step("prb prop list", "zoomInLimit"),
        Step("prb prop set vendor.talkertracking.flag 4"),
        Step("prb prop get persist.tvpr.zoomInLimit", says="is not set"),
        Step("prb prop unset vendor.talkertracking.flag"),
    ],
    "integrator": [
        SESSION_BUS,
        goes_on("examples/camera-provider.py", own=True),
        goes_on("build/release/bin/productionrulesd --bus mqtt://127.0.0.1:1883/room-12 --provider dbus:system"),
        goes_on("examples/vision-publisher.py 127.0.0.1 1883 room-12"),
        Step("productionrulesd --check --bus mqtt://127.0.0.1:1883/room-12", "bus: .* ok"),
        Step("prb check-feed --bus mqtt://localhost/room-12 --seconds 60", "a second", says="^watching"),
        Step("busctl --user call fyn.productionrules.CameraProvider /fyn/productionrules/CameraProvider "
             "fyn.productionrules.CameraProvider1 SetSceneJson s '{}'"),
        Step("prb record --bus mqtt://localhost/room-12 -o room.jsonl --max-size 100 --files 5", "ICDOut", "room.jsonl",
             says="messages recorded|^the recording begins|^recording to", until_interrupted=True),
        Step("for room in $(seq -f room-%g 100); do\nsed \"s/room-12/$room/; s/^user /user $room-/\" "
             "/usr/share/doc/productionrules/mosquitto/room.acl\ndone > fleet.acl", "room-100", "fleet.acl"),
        goes_on("tools/multi-device", "ready"),
        goes_on("mosquitto_sub -v -t '+/PRBOut' -t '+/PRBOutSecondary/#' &"),
        Step("mosquitto_pub -t side1/camera -m '{\"fynCamId\":1}'"),
        Step("mosquitto_pub -t side2/camera -m '{\"fynCamId\":2}'"),
        Step("mosquitto_pub -t main/cameras -m '[{\"isAttached\":true,\"ids\":{\"fynCamId\":0}},{\"isAttached\":true,\"ids\":"
             "{\"fynCamId\":1}},{\"isAttached\":true,\"ids\":{\"fynCamId\":2}}]'"),
        Step("prb simulate --seed 1 --people 4 --cameras 3 --noise none | grep ICDOut > meeting.jsonl", "ICDOut", "meeting.jsonl"),
        goes_on("for room in main side1 side2; do prb play meeting.jsonl --bus mqtt://127.0.0.1/$room & done"),
    ],
    "tuner": [
        TRACKS, SETTINGS, MEETINGS, MEETING,
        Step("prb import room.csv --fps 30 -o room.jsonl", "ICDOut", "room.jsonl"),
        Step("prb import front.csv side.csv --turns turns.csv -o room.jsonl", "ICDOut", "room.jsonl"),
        Step("prb import ip2.csv --turns is1008a.csv -o front.jsonl", "isSpeaker", "front.jsonl"),
        Step("prb import ip5.csv --turns is1008a.csv -o side.jsonl", "isSpeaker", "side.jsonl"),
        Step("prb import hc3.csv -o hallway.jsonl", "ICDOut", "hallway.jsonl"),
        Step("for turns in en2001d es2014c in1012 is1003b; do for seats in table row pairs; do\nprb simulate --seed 1 --people 4 "
             "--minutes 6 --seats $seats --turns $turns.csv --errors real -o meeting-$turns-$seats.jsonl\ndone; done",
             "ICDOut", "meeting-is1003b-pairs.jsonl"),
        given("rm meeting-*.jsonl"),
        Step("prb simulate --seed 7 --seats table --turns turns.csv --come-late 1 --errors low -o meeting.jsonl", "ICDOut",
             "meeting.jsonl"),
        Step("prb simulate --seed 7 --seats row --overlap 15 --errors none --missed 20 --tag-late 8 | prb report -", "Head size"),
        Step("awk -F= '/^persist\\.((pf|sf)\\.)?fdtimers/ {print $1 \"=0\"}' conf/fyn.conf.example > zero.conf", "=0", "zero.conf"),
        Step("awk -F= '/^persist\\.((pf|sf)\\.)?fdtimers/ {print $1 \"=\" 2*$2}' conf/fyn.conf.example > double.conf", "=8000",
             "double.conf"),
        Step("prb report front.jsonl side.jsonl [--config zero.conf]", "Head size"),
        Step("prb report front.jsonl side.jsonl --property vendor.talkertracking.flag=4 ...", "Head size"),
        Step("prb report meeting.jsonl --html report.html", "<html", "report.html"),
        Step("prb report monday.jsonl tuesday.jsonl --config quick.conf --json figures.json", "in_view_percent", "figures.json"),
        Step("ls recordings/*.jsonl.zst | xargs -P \"$(nproc)\" -I{} sh -c 'prb report \"$1\" --json \"$1.figures.json\"' _ {}",
             "in_view_percent", "recordings/2.jsonl.zst.figures.json"),
        Step("prb compare default.conf quick.conf meetings/*.jsonl", "too few recordings"),
        Step("prb compare a.conf b.conf one.jsonl two.jsonl --json differences.json", "changes_per_minute", "differences.json"),
        Step("prb tune meetings/*.jsonl --key persist.fdtimers.groupframe.outside=0..4000:1000 "
             "--key persist.fdtimers.groupframe.onedge=0..8000 "
             "--goal 'latency_s + 2 * changes_per_minute + 0.5 * (100 - in_view_percent)' --html front.html --configs front/",
             "best.conf", "front"),
        given("rm tune.jsonl"),
        Step("prb tune meetings/*.jsonl --key KEY=0..8000:500 --jobs-out jobs.txt", "prb tune", "jobs.txt"),
        Step("prb tune meetings/*.jsonl --key KEY=0..8000:500 --html front.html", "<html", "front.html"),
        Step("prb tune meeting.jsonl --key persist.fdtimers.groupframe.outside=0..4000:1000 --html front.html", "<html", "front.html"),
        SMALL,
        Step("prb tune *.jsonl --key KEY1=0..8000 --key KEY2=0..8000 --random 50 --goal 'latency_s + changes_per_minute'",
             "Smallest goal"),
        given("rm tune.jsonl jobs.txt"),
        Step("prb tune *.jsonl --key KEY=0..8000 --jobs-out jobs.txt && parallel < jobs.txt >> tune.jsonl", r"^\{",
             "tune.jsonl"),
    ],
    "supporter": [
        SETTINGS, MEETINGS, MEETING,
        Step("prb why meeting.jsonl --at 02:05 --person 3", "Person 3|3"),
        Step("prb why meeting.jsonl --at 02:05 --change", "Would help"),
        Step("prb why meeting.jsonl --at 125.1 --change --property vendor.talkertracking.flag=4", "Changed"),
        Step("prb replay meeting.jsonl -o effects.jsonl", "PRBOut", "effects.jsonl"),
        Step("prb replay meeting.jsonl --property vendor.talkertracking.flag=4 --log I | less", "PRBOut"),
        Step("prb simulate --seed 1 | prb replay - --config quick.conf --decisions", "decision"),
        Step("prb simulate --seed 7 --noise none | prb replay - -o scenes.jsonl", "PRBOut", "scenes.jsonl"),
        Step("prb check-feed meeting.jsonl", "a second"),
        serves("prb view meeting.jsonl --config a.conf --config b.conf"),
        *ROOM,
        Step("prb watch --bus mqtt://localhost", "[0-9]{3} picture ", until_interrupted=True),
        Step("prb watch --bus mqtt://localhost | tee log", "[0-9]{3} picture ", until_interrupted=True),
        serves("prb view --bus mqtt://localhost"),
        Step("prb ctl mode people --bus mqtt://localhost"),
        Step("prb record --bus mqtt://localhost -o room.jsonl", "ICDOut", "room.jsonl", says="messages recorded|^the recording begins|^recording to", until_interrupted=True),
        # The service must not know more than the recording.
        given("prb prop unset vendor.talkertracking.flag; rm room.jsonl; "
              "prb record --bus mqtt://localhost/room-9 -o room.jsonl --outputs --seconds 4 2> begun & recorder=$!; "
              "until grep -qs 'recording to' begun; do sleep 0.1; done; "
              "productionrulesd --bus mqtt://localhost/room-9 2> log & service=$!; "
              "examples/vision-publisher.py 127.0.0.1 1883 room-9 & wait $recorder; kill $service $!"),
        Step("prb replay room.jsonl --check", "same"),
        serves("prb view room.jsonl --recorded [--config FILE]"),
        given("head -c 1000 /dev/urandom > room.mp4"),
        serves("prb view room.jsonl --video room.mp4"),
        given("cp room.jsonl monday.jsonl; cp room.jsonl tuesday.jsonl"),
        serves("prb view monday.jsonl --beside tuesday.jsonl"),
        given("prb simulate --seed 7 --minutes 1 | sed -n 1,60p > meeting.jsonl"),
        Step("prb play meeting.jsonl --bus mqtt://localhost", says="messages played"),
    ],
}

# Begins of commands that no round types, and why.
LEFT_OUT = {
    "./run": "builds all of it; what it plays is `prb demo`",
    "./check": "runs these rounds",
    "cmake ": "builds",
    "build/release/bin/benchmarks": "takes minutes",
    "tools/setup/install-dependencies.sh": "changes the machine",
    "sudo ": "changes the machine; the check of the packages does it in a clean one",
    "npm ": "the check of the viewer page does it",
    "fuzz/run": "the check with fuzzers does it",
    "build/fuzz/": "needs a fault",
    "parallel ": "needs other machines",
    "prb-vision ": "the tests of real video do it",
    "prb-camera ": "the tests of real video do it",
    "prb replay room.jsonl -o effects.jsonl": "the tests of real video do it",
    "prb ctl reset-layouts": "with PRB_BUS in the environment",
    "prb play meeting.jsonl --bus mqtt://localhost --speed 4 --loop": "shows nothing and has no end",
    "source <(prb completion zsh)": "needs another shell",
}
