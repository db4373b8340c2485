# Judges what tools/abi/compare has gathered. Files in order: interfaces (header, name), classes (header, name,
# interfaces), the browser compiler's tables, the module compiler's tables; a line of a table is class, number of the
# table, slot, operation.

function refuse(text) { print "abi: " text; bad = 1 }

# Tables of one class in the module must begin with those of its interfaces, in their order.
function judge(class, list, shown,    count, wanted, k, slot, interface) {
    count = split(list, wanted, " ")
    if (tables[class] != count) {
        refuse(shown " has " tables[class] + 0 " tables, its interfaces " count)
        return
    }
    for (k = 1; k <= count; ++k) {
        interface = wanted[k]
        if (!(interface in size)) { refuse(interface " is no interface of these headers"); continue }
        for (slot = 0; slot < size[interface]; ++slot)
            if (browser[interface, slot] != module[class, k - 1, slot])
                refuse(shown ", table " k - 1 ", slot " slot ": the browser calls " interface "::" \
                       browser[interface, slot] ", the module has " module[class, k - 1, slot])
        # New operations of the class itself may follow its first table.
        if (k > 1 && moduleSize[class, k - 1] != size[interface])
            refuse(shown ", table " k - 1 ": " moduleSize[class, k - 1] " slots instead of " size[interface])
    }
}

FNR == 1 { ++file }
file == 1 { interfaces[++interfaceCount] = $2; next }
file == 2 {
    line = $0
    classes[++classCount] = $2
    sub(/^[ \t]*[^ \t]+[ \t]+[^ \t]+[ \t]+/, "", line)
    bases[classCount] = line
    next
}
$4 ~ /^~/ { refuse($1 " has a virtual destructor, slot " $3) }
file == 3 {
    if (seen[$1, $4]++) refuse($1 "::" $4 " is overloaded")
    browser[$1, $3] = $4
    size[$1] = $3 + 1
    ++operations
}
file == 4 {
    if ($4 ~ /__cxa_pure_virtual/) refuse($1 " has a pure operation, slot " $3)
    module[$1, $2, $3] = $4
    moduleSize[$1, $2] = $3 + 1
    if ($2 + 1 > tables[$1]) tables[$1] = $2 + 1
}
END {
    for (i = 1; i <= interfaceCount; ++i) {
        if (!(interfaces[i] in size)) { refuse("no table of " interfaces[i]); continue }
        judge(interfaces[i], interfaces[i], interfaces[i])
        if (moduleSize[interfaces[i], 0] != size[interfaces[i]])
            refuse(interfaces[i] " has " moduleSize[interfaces[i], 0] " slots in the module, " size[interfaces[i]] \
                   " in the browser")
    }
    for (i = 1; i <= classCount; ++i) judge(classes[i], bases[i], classes[i])
    if (!bad)
        printf "abi: %d interfaces with %d slots and %d classes of the module: both compilers agree\n", \
            interfaceCount, operations, classCount
    exit bad
}
