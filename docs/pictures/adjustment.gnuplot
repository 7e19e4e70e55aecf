# gnuplot -c adjustment.gnuplot adjustment.dat adjustment.plot.svg
#
# What the samples 0 to 255 become at some gains, with an offset of 0.
set terminal svg size 720,420 font 'sans-serif,14' noenhanced
set output ARG2
set border 3 lc rgb '#808080'
set tics nomirror textcolor rgb '#808080'
set grid lc rgb '#808080' dt 3
set xlabel 'sample' textcolor rgb '#808080'
set ylabel 'adjusted' textcolor rgb '#808080'
set key outside right textcolor rgb '#808080' title 'gain in 1/64' textcolor rgb '#808080'
set xrange [0:255]
set yrange [0:260]
set xtics 0,32
set ytics 0,32
colours = '#7a8fd0 #808080 #2a9d8f #c9a227 #e07a3f #d1495b'
gains = '32 64 96 128 300 400'
plot for [i = 2:7] ARG1 using 1:i skip 1 with lines lw 2 lc rgb word(colours, i - 1) \
    title word(gains, i - 1)
