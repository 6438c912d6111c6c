# gnuplot -c performance.gnuplot DATA SVG: the speed of each member relative to its best peer, on both sizes.
data = ARG1
set terminal svg size 1000,1150 font "sans-serif,12" background "white"
set output ARG2
set logscale x
set xrange [0.5:500]
set xtics (0.5, 1, 2, 5, 10, 20, 50, 100, 200, 500)
set xlabel "speed relative to the best peer"
set yrange [*:*] reverse
set ytics noenhanced
set grid xtics
set key top right
set style fill solid 0.9 noborder
set arrow from 1, graph 0 to 1, graph 1 nohead linewidth 2 linecolor "#444444" front
plot data using (1):0:(1 < $3 ? 1 : $3):(1 < $3 ? $3 : 1):($0 - 0.38):($0):ytic(1) with boxxyerror \
         linecolor "#1f6f8b" title "4096 x 3072", \
     data using (1):0:(1 < $2 ? 1 : $2):(1 < $2 ? $2 : 1):($0):($0 + 0.38) with boxxyerror \
         linecolor "#f0a04b" title "512 x 512"
