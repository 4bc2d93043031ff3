createNode transposeMatrix -n "t";
	setAttr ".omat" -type "nurbsCurve" "AAAA";
createNode transform -n "o";
	setAttr ".opm" -type "mesh" "AAA";
