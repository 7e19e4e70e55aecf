# What bench/chart.gnuplot draws, from the table of lumalane_bench: a line per function,
#
#     column,row,name,kind,mean,least,greatest
#
# and one per family, with kind "family" and nothing behind. Numbers are how many times as fast the
# library is as the fastest peer, or (kind "copy") as the closest yardstick where there is no peer:
# geometric mean, least and greatest of all sizes. Families fill the first column, then the second.
BEGIN {
    FS = ","
    yardsticks = split("bilinear stretch,memset,memcpy", yardstick, ",")
}
{ gsub(/"/, "") }
/^#/ { next }
!head {
    for (i = 1; i <= NF; ++i)
        at[$i] = i
    head = 1
    next
}
function number(name) { return name in at ? $at[name] : "" }
{
    family = $at["family"]
    name = $at["function"]
    kind = "peer"
    times = number("libyuv quotient")
    other = number("libswscale quotient")
    if (times == "" || (other != "" && other + 0 < times + 0))
        times = other
    if (times == "") {
        kind = "copy"
        for (i = 1; i <= yardsticks && times == ""; ++i)
            times = number(yardstick[i] " quotient")
    }
    if (times == "")
        next
    times += 0
    if (!(name in count)) {
        if (!(family in size))
            order[++families] = family
        members[family, ++size[family]] = name
        least[name] = greatest[name] = times
        kinds[name] = kind
    }
    ++count[name]
    logarithms[name] += log(times)
    if (times < least[name])
        least[name] = times
    if (times > greatest[name])
        greatest[name] = times
}
END {
    heading = 1.7 # rows
    for (f = 1; f <= families; ++f)
        all += heading + size[order[f]]
    for (f = 1; f <= families; ++f) {
        family = order[f]
        height = heading + size[family]
        if (!column && row && row + height / 2 > all / 2) {
            column = 1
            row = 0
        }
        row += heading
        printf "%d,%.1f,%s,family,,,\n", column, row - 0.9, family
        for (i = 1; i <= size[family]; ++i) {
            name = members[family, i]
            printf "%d,%.1f,%s,%s,%.4f,%.4f,%.4f\n", column, row++, name, kinds[name],
                   exp(logarithms[name] / count[name]), least[name], greatest[name]
        }
    }
}
