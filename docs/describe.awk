# Has the reference say what the headers leave to the reader: one description above several members is that of all
# of them, a property is what its function says, and what is the same everywhere is said here, once.

function flush(    i) {
    if (members > 1)
        print indent "///@{"
    for (i = 1; i <= count; ++i)
        print lines[i]
    if (members > 1)
        print indent "///@}"
    count = members = described = 0
}

function keep(line) { lines[++count] = line }

function say(text) { print indent "/// " text }

{ match($0, /^ */); indent = substr($0, 1, RLENGTH) }

# A description, and the members below it up to the next one or a gap.
/^ +\/\/\/ / { if (described != "text") flush(); described = "text"; keep($0); next }
described && (/^ *$/ || /^ *(public|protected|private|Q_SIGNALS)/ || /^};/) { flush(); print; next }
described == "members" && /^ +Q_PROPERTY\(/ { flush() }
described {
    described = "members"
    keep($0)
    members += /[;}]( *\/\/.*)?$/
    next
}

/^ +Q_PROPERTY\(/ { match($0, /READ [A-Za-z0-9_]+/); say(RLENGTH > 0 ? "See " substr($0, RSTART + 5, RLENGTH - 5) "()." : "See the function that reads it.") }
/^ +void [A-Za-z0-9]+Changed\(\);/ { say("The property has another value.") }
/^ +explicit [A-Za-z0-9]+\([A-Za-z]+ \*parent = nullptr\);/ { say("Owned by @p parent, if there is one.") }
/^ +[A-Za-z].* override;/ || /^ +~/ { say("As in the base class.") }
{ print }
