# gnuplot -c bench/chart.gnuplot speed.csv speed.svg
#
# Draws the table of lumalane_bench: a panel for a picture inside the cache and one for the largest,
# and for every function the bars of the library and of the fastest peer, with a mark for memcpy.
table = ARG1
chart = ARG2

set datafile separator comma
set key autotitle columnhead # so that the head is no data
set key off

first_row = "awk -F, 'NR > 1 && !seen[$%d]++ { print $%d }' '%s'"
measured = system(sprintf(first_row, 1, 1, table))
pictures = word(measured, words(measured) > 1 ? 2 : 1) . " " . word(measured, words(measured))
functions = words(system(sprintf(first_row, 2, 2, table)))

# Nanoseconds per pixel of the row at hand; a function must have an argument. An empty cell is a
# contestant that took no part.
never = 1e9
number(text) = strlen(text) ? real(text) : never
min(a, b) = a < b ? a : b
max(a, b) = a > b ? a : b
ours(x) = number(strcol(3))
libyuv(x) = number(strcol("libyuv"))
swscale(x) = number(strcol("libswscale"))
memset(x) = number(strcol("memset"))
peer(x) = min(min(libyuv(0), swscale(0)), memset(0))
lead(x) = min(min(number(strcol("libyuv quotient")), number(strcol("libswscale quotient"))), \
              number(strcol("memset quotient")))
peer_name(x) = memset(0) < never ? "memset" : libyuv(0) < swscale(0) ? "libyuv" : "libswscale"
copy(x) = number(strcol("memcpy"))

stats table using (max(ours(0), copy(0))) name "time" nooutput
longest = 1.2 * time_max # longer bars of peers are cut; and room for the words at their ends
cut(time) = min(time, 0.9 * longest)

# In pixels of the picture.
bar = 10.
slot = 2 * bar + 8
names = 290
gap = 26
panel_width = 370
panel_height = functions * slot
head = 84
panel_head = 34
panel_foot = 40
panel_rows = (words(pictures) + 1) / 2
width = names + 2 * (panel_width + gap)
height = head + panel_rows * (panel_head + panel_height + panel_foot)
across(x) = real(x) / width
down(y) = 1 - real(y) / height

ink = "#1f2933"
faint = "#7b8794"
our_colour = "#1769d2"
peer_colour = "#9fb3c8"
copy_colour = "#d9480f"

set terminal svg size width, height background "#ffffff" \
    font "Helvetica Neue,Helvetica,Arial,sans-serif,12"
set output chart
set multiplot

# The title and the legend: drawn once, on a plot of nothing.
set lmargin at screen 0
set rmargin at screen 1
set tmargin at screen 1
set bmargin at screen 0
set xrange [0:width]
set yrange [height:0]
unset border
unset tics
set style fill solid noborder
set label "{/:Bold Nanoseconds per pixel, one thread: shorter is better}" at 16, 26 font ",16" \
    textcolor rgb ink
set label "Lumalane" at 36, 54 textcolor rgb ink
set object rectangle from 18, 48 to 30, 60 fillcolor rgb our_colour fillstyle noborder
set label "the fastest of the others, which adjust nothing (long bars are cut)" at 138, 54 textcolor rgb ink
set object rectangle from 120, 48 to 132, 60 fillcolor rgb peer_colour fillstyle noborder
set label "memcpy of as many bytes" at 571, 54 textcolor rgb ink
set object rectangle from 560, 46 to 562, 62 fillcolor rgb copy_colour fillstyle noborder
plot NaN
unset label
unset object

# A bar `place` bars below the top of its function's slot.
row(x) = int(column(0)) % functions
top(place) = row(0) + (4. + place * bar) / slot
bottom(place) = top(place) + (bar - 1.) / slot
middle(place) = (top(place) + bottom(place)) / 2
mark = longest / panel_width
mark_end = 2. / slot
here(value) = strcol(1) eq picture && value < never ? value : NaN

set xrange [0:longest]
set yrange [functions:0]
set grid xtics linetype 1 linecolor rgb "#e4e7eb"
set xtics 0.1 format "%.1f" scale 0 textcolor rgb faint
do for [panel = 1:words(pictures)] {
    picture = word(pictures, panel)
    left = (panel - 1) % 2
    panel_left = names + left * (panel_width + gap)
    panel_top = head + panel_head + ((panel - 1) / 2) * (panel_head + panel_height + panel_foot)
    set lmargin at screen across(panel_left)
    set rmargin at screen across(panel_left + panel_width)
    set tmargin at screen down(panel_top)
    set bmargin at screen down(panel_top + panel_height)
    set title sprintf("{/:Bold %s}", picture) offset 0, -0.5 font ",13" textcolor rgb ink
    plot table using (here(ours(0))):(middle(0)):(0):(ours(0)):(top(0)):(bottom(0)) \
            with boxxyerror linecolor rgb our_colour, \
        table using (here(peer(0)) * 0 + cut(peer(0))):(middle(1)):(0):(cut(peer(0))):(top(1)):(bottom(1)) \
            with boxxyerror linecolor rgb peer_colour, \
        table using (here(copy(0))):(row(0) + 0.5):(copy(0) - mark):(copy(0) + mark): \
                    (top(0) - mark_end):(bottom(1) + mark_end) \
            with boxxyerror linecolor rgb copy_colour, \
        table using (left ? NaN : here(0)):(row(0) + 0.5):2 \
            with labels right offset -0.7, 0 textcolor rgb ink noenhanced, \
        table using (here(peer(0)) * 0 + ours(0)):(middle(0)):(sprintf("{/:Bold %.1f×}", lead(0))) \
            with labels left offset 0.5, 0 font ",12" textcolor rgb our_colour, \
        table using (here(peer(0)) * 0 + cut(peer(0))):(middle(1)):(peer_name(0)) \
            with labels left offset 0.5, 0 font ",10" textcolor rgb faint
}
unset multiplot
