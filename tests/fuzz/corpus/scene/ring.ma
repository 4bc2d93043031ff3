createNode transform -n "a";
createNode transform -n "b";
connectAttr "a.t" "b.t";
connectAttr "b.ty" "a.tx";
