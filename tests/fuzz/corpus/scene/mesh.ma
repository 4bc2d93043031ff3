createNode transform -n "m";
createNode mesh -n "mShape" -p "m";
	setAttr -s 3 ".vt[0:2]"  0 0 0 1 0 0 0 1 0;
	setAttr -s 3 ".ed[0:2]"  0 1 0 1 2 0 2 0 0;
	setAttr -s 1 ".fc[0]" -type "polyFaces" 
		f 3 0 1 2 ;
	setAttr ".pt[1]" -type "float3" 0 0 1 ;
