# Draws how time and memory grow with the number of files; see script/bench.
set terminal svg size 900,380 font "sans-serif,13" background "white"
set multiplot layout 1,2
set logscale xy
set xlabel "files in the home"
set format x "%.0s%c"
set key top left
set grid
set style line 1 lw 2 pt 7 ps 0.7 lc rgb "#1f6fb2"
set style line 2 lw 2 pt 5 ps 0.7 lc rgb "#999999"
set title "Time"
set ylabel "ms"
plot folder."/volbrin.dat" using 1:2 with linespoints ls 1 title "volbrin scan", \
     folder."/du.dat" using 1:2 with linespoints ls 2 title "du -s"
set title "Peak memory"
set ylabel "MB"
set yrange [1:100]
plot folder."/volbrin.dat" using 1:3 with linespoints ls 1 title "volbrin scan", \
     folder."/du.dat" using 1:3 with linespoints ls 2 title "du -s"
unset multiplot
