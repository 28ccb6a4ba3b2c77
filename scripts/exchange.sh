# Sourced by the scripts that show ads: the sandbox exchange of build/dev, and a player that knows it.

# start_exchange STATE_DIR FIFO: sets `listening`; what the exchange says from then on is on descriptor 3.
start_exchange() {
    mkfifo "$2"
    build/dev/sandbox/zntads-exchange --state-dir "$1" >"$2" &
    exec 3<"$2"
    read -r listening <&3
}

field() { sed -E "s/.*\"$1\": ?\"([^\"]*)\".*/\1/" <<<"$listening"; }

# player DATA_DIR ARGUMENT…
player() {
    build/dev/examples/player/zntads-player --exchange "$(field https)" --log-upload "$(field http)" \
        --ca-file "$(field ca)" --data-dir "$1" --log off "${@:2}"
}
