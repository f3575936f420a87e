# awk -f layers.awk layers.txt FILE...: names each #include that no line of layers.txt allows.
FNR == NR {
    if ($1 == "kind") {
        kinds[++kindCount] = $2
        patterns[kindCount] = $3
    } else if ($1 !~ /^#/ && NF > 0) {
        folders[++folderCount] = $1
        for (i = 2; i <= NF; i++)
            allowed[$1, $i] = 1
    }
    next
}

# The longest listed folder that holds the path, or "".
function folderOf(path, i, best) {
    best = ""
    for (i = 1; i <= folderCount; i++)
        if (index(path, folders[i] "/") == 1 && length(folders[i]) > length(best))
            best = folders[i]
    return best
}

# Whether `folder` may include the file at `path`: its folder stands in the line, or one around it
# that has no line of its own, such as "platform".
function mayReach(folder, path) {
    if ((folder, folderOf(path)) in allowed)
        return 1
    while (sub(/\/[^\/]*$/, "", path))
        if ((folder, path) in allowed && folderOf(path "/x") == "")
            return 1
    return 0
}

function kindOf(name, i) {
    for (i = 1; i <= kindCount; i++)
        if (name ~ patterns[i])
            return kinds[i]
    return ""
}

function breach(text) {
    printf "%s:%d: %s\n", FILENAME, FNR, text
    failed = 1
}

FNR == 1 {
    folder = folderOf(FILENAME)
    if (folder == "")
        breach("its folder has no line in layers.txt")
}

folder != "" && /^[ \t]*#[ \t]*include[ \t]/ {
    name = $0
    sub(/^[ \t]*#[ \t]*include[ \t]*/, "", name)
    sub(/[ \t]*(\/\/.*)?$/, "", name)
    kind = kindOf(name)
    if (kind == "" && name ~ /^"[^"]*\/[^"]*"$/) {
        if (!((folder, "any") in allowed) && !mayReach(folder, substr(name, 2, length(name) - 2)))
            breach(folder " may not include " name)
    } else if (kind == "") {
        breach(name " is of no kind that layers.txt knows; ours are included from the root")
    } else if (!((folder, "any") in allowed) && !((folder, kind) in allowed)) {
        breach(folder " may not include " name " (" kind ")")
    }
}

END { exit failed }
