# gnuplot -c bench/chart.gnuplot speed.csv speed.svg
#
# Draws the table of lumalane_bench: for every function how many times as fast the library is as the
# fastest peer, by family. Its colours for a dark background are in bench/chart.css.
table = ARG1
chart = ARG2
here = system("dirname '" . ARG0 . "'")
rows = sprintf("< awk -f '%s/chart.awk' '%s'", here, table)
# The table's first line: the processor, then the software.
processor = system(sprintf("sed -n '1s/^# \\([^;]*\\); .*/\\1/p' '%s'", table))
software = system(sprintf("sed -n '1s/^[^;]*; //p' '%s'", table))

set datafile separator comma
stats rows using ($2 + 1) name "row" nooutput

# In pixels.
line = 13.
names = 258
bars = 190
gap = 16
head = 92
foot = 66
panel_height = line * (row_max + 0.3)
width = 2 * (names + bars + gap)
height = head + panel_height + foot
across(x) = real(x) / width
down(y) = 1 - real(y) / height

least_shown = 0.25
most_shown = 16.5
cut(times) = times < least_shown ? least_shown : times > most_shown ? most_shown : times

rgb_of(colour) = int("0x" . colour[2:])
ink = "#1f2933"
faint = "#68778a"
grid = "#dfe4ea"
ahead_colour = "#1769d2"
behind_colour = "#d9480f"
copy_colour = "#8698ab"
colour(kind, times) = rgb_of(kind eq "copy" ? copy_colour : times < 1 ? behind_colour : ahead_colour)

set terminal svg size width, height background "#ffffff" \
    font "Helvetica Neue,Helvetica,Arial,sans-serif,11"
set output chart
set multiplot
set key off

# The title, the legend and the caption: drawn once, on a plot of nothing.
set lmargin at screen 0
set rmargin at screen 1
set tmargin at screen 1
set bmargin at screen 0
set xrange [0:width]
set yrange [height:0]
unset border
unset tics
set style fill solid noborder
set label "{/:Bold How many times as fast as the fastest of libyuv and libswscale}" at 16, 24 \
    font ",15" textcolor rgb ink
legend_y = 50
set object rectangle from 16, legend_y - 5 to 46, legend_y + 4 fillcolor rgb ahead_colour fillstyle solid noborder
set label "faster" at 52, legend_y textcolor rgb ink
set object rectangle from 100, legend_y - 5 to 130, legend_y + 4 fillcolor rgb behind_colour fillstyle solid noborder
set label "slower" at 136, legend_y textcolor rgb ink
set object rectangle from 188, legend_y - 5 to 218, legend_y + 4 fillcolor rgb copy_colour fillstyle solid noborder
set label "where neither library has such a function: beside memset or memcpy (edges: a bilinear stretch)" \
    at 224, legend_y textcolor rgb ink
set label "Bars: the geometric mean of all sizes, on a logarithmic scale. Lines: from the least to the greatest." \
    at 16, legend_y + 18 textcolor rgb faint
set label processor at 16, height - 30 textcolor rgb faint noenhanced
set label sprintf("%s; one thread, the widest target", software) at 16, height - 14 \
    textcolor rgb faint noenhanced
plot NaN
unset label
unset object

set logscale x 2
set xrange [least_shown:most_shown]
set yrange [row_max + 0.3:0]
set grid xtics linetype 1 linecolor rgb grid
set xtics ("¼" 0.25, "½" 0.5, "1" 1, "2" 2, "4" 4, "8" 8, "16" 16) scale 0 textcolor rgb faint
of(panel) = column(1) == panel
do for [panel = 0:1] {
    left = names + panel * (names + bars + gap)
    set lmargin at screen across(left)
    set rmargin at screen across(left + bars)
    set tmargin at screen down(head)
    set bmargin at screen down(head + panel_height)
    set arrow 1 from 1, 0 to 1, row_max + 0.3 nohead front linecolor rgb faint linewidth 1
    is_family(x) = strcol(4) eq "family"
    plot rows using (of(panel) && !is_family(0) ? 1 : NaN):($2 + 0.5):(1):(cut($5)):($2 + 0.18): \
                    ($2 + 0.82):(colour(strcol(4), $5)) with boxxyerror linecolor rgb variable, \
        rows using (of(panel) && !is_family(0) ? cut($6) : NaN):($2 + 0.5):(cut($7) - cut($6)):(0) \
            with vectors nohead linecolor rgb ink linewidth 1, \
        rows using (of(panel) && !is_family(0) ? least_shown : NaN):($2 + 0.5):3 \
            with labels right offset -0.6, 0 font ",10" textcolor rgb ink noenhanced, \
        rows using (of(panel) && is_family(0) ? least_shown : NaN):($2 + 0.4): \
                   (sprintf("{/:Bold %s}", strcol(3))) \
            with labels right offset -0.6, 0 textcolor rgb ink
}
unset multiplot
unset output
system(sprintf("sed -i -e 's/<title>[^<]*/<title>Speed/' -e '/<desc>/{s/.*/<style>/;r %s/chart.css' -e 'a </style>' -e '}' '%s'", here, chart))
