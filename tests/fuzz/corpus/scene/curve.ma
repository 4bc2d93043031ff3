createNode nurbsCurve -n "c";
	setAttr ".cc" -type "nurbsCurve" 
		3 1 0 no 3
		6 0 0 0 1 1 1
		4
		0 0 0
		1 0 0
		2 0 0
		3 0 0
		;
createNode animCurveTL -n "k";
	setAttr -s 2 ".ktv[0:1]"  1 0 10 5;
	setAttr ".kot[1]" 5;
