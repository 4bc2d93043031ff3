createNode joint -n "j";
createNode skinCluster -n "sc";
	setAttr -s 2 ".wl";
	setAttr ".wl[0].w[0]"  1;
	setAttr -s 2 ".wl[1].w[0:1]"  0.25 0.75;
	setAttr ".pm[0]" -type "matrix" 1 0 0 0 0 1 0 0 0 0 1 0 0 -1 0 1;
connectAttr "j.wm" "sc.ma[0]";
