#pragma once

#include <maya/MObject.h>

// The control shapes, by the numbers of their buttons; the numbers have gaps. Each routine makes a
// new curve at the top of the scene and returns its transform, null when it could not be made.
// Those run by a script ask for the name "curveTemp" (01: the circle command's own name; 36:
// "eyesCtrl", with two rings as child curves); 09 and 46 leave the name to the application.

MObject createShape01();  ///< circle facing X, with construction history
MObject createShape02();  ///< cube drawn as one wire
MObject createShape03();  ///< pyramid arrowhead pointing along negative X
MObject createShape04();  ///< flat double-headed arrow
MObject createShape05();  ///< flat ring with an arrowhead of two crossed fins
MObject createShape06();  ///< double-headed arrow bent into an arch
MObject createShape07();  ///< three-dimensional double-headed arrow along X
MObject createShape08();  ///< oval dome with an upright post
MObject createShape09();  ///< three crossed lines
MObject createShape10();  ///< wire sphere of three circles
MObject createShape12();  ///< flat sole outline
MObject createShape13();  ///< flat four-way arrow
MObject createShape14();  ///< wire dome
MObject createShape15();  ///< four-way arrow bent over a dome
MObject createShape16();  ///< double arrow bent over a dome
MObject createShape17();  ///< plus sign in the XY plane
MObject createShape18();  ///< notched square in the XZ plane
MObject createShape19();  ///< upright stem, flat ring at the top, small cone at the foot
MObject createShape20();  ///< upright stem, flat ring at the foot, small cone at the top
MObject createShape21();  ///< flat stem, ring at the top, triangle at the foot
MObject createShape22();  ///< flat stem, ring at the foot, triangle at the top
MObject createShape23();  ///< flat circle with crossed diameters
MObject createShape26();  ///< square pyramid standing on its tip
MObject createShape27();  ///< flat ring with an arrowhead
MObject createShape29();  ///< flat arrowhead with a hollow back
MObject createShape32();  ///< flat compass rose
MObject createShape34();  ///< arch in the YZ plane, smooth
MObject createShape35();  ///< block arrow in the YZ plane
MObject createShape36();  ///< eyes: a smooth outline with two rings as child curves
MObject createShape38();  ///< flat ring with four arrows
MObject createShape39();  ///< flat four-pointed star
MObject createShape40();  ///< flat stem with a ring crossed by the stem
MObject createShape42();  ///< wire cylinder
MObject createShape43();  ///< flat stem with a square head
MObject createShape46();  ///< square in the YZ plane
