createNode transform -n "a";
createNode transform -n "b" -p "a";
createNode transform -n "c";
parent -s -nc -r -add "|a|b" "c";
rename -uid "01234567-89AB-CDEF-0123-456789ABCDEF";
lockNode -l 1 ;
fileInfo "product" "x";
