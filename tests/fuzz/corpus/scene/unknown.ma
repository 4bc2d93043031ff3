createNode someNode -n "u";
	setAttr ".zz" -type "string" "a\"b\\n";
	setAttr ".q[3].w" 1 2 3;
relationship "link" ":lightLinker1" ":a.message" ":b.message";
select -ne :time1;
	setAttr ".o" 5;
