# gnuplot -c scaling.gnuplot DATA SVG: the time of each member per pixel, by the size of the picture.
data = ARG1
set terminal svg size 1000,600 font "sans-serif,12" background "white"
set output ARG2
set datafile missing "nan"
set logscale xy
set xrange [200:3e8]
set xlabel "pixels"
set ylabel "ns per pixel"
set format x "10^{%L}"
set grid
set key outside right noenhanced
stats data skip 1 nooutput
plot for [column = 2:STATS_columns] data using 1:column with linespoints pointtype column pointsize 0.7 linewidth 2 \
         title columnheader(column)
