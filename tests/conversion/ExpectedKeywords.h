#pragma once

#include <sstream>
#include <string>
#include <vector>

/// A row of the keyword table as it has to be.
struct ExpectedKeyword {
  std::string keyword;
  std::string legacyName;
  int required;
  char kind;  // '-' marker, 'w' word, 'i' int, 'f' float, 's' string, 'n' int or float
};

/// "keyword:legacy name:required:kind" in the order of the rows.
inline constexpr const char* kExpectedKeywordRows = R"(
BEGIN_COMMENT_BLOCK::0:- END_COMMENT_BLOCK::0:- ParentStandard::1:w
DIMLUnderline:DIMLUnderline:1:n DIMLOverrun:DIMLOverrun:0:n
DIMLFlippedOverrun:DIMLFlippedOverrun:1:n DIMLNoFlippedOverrun:DIMLNoFlippedOverrun:1:n
DIMLShowReverse:DIMLShowReverse:1:n DIMLShowNoReverse:DIMLShowNoReverse:1:n
DIMLRadiusIntReachCenter:DIMLRadiusIntReachCenter:1:n
DIMLDiameterIntReachCenter:DIMLDiameterIntReachCenter:1:n
DIMLRadiusExtReachCenter:DIMLRadiusExtReachCenter:1:n
DIMLDiameterExtReachCenter:DIMLDiameterExtReachCenter:1:n DIMTYPos:DIMTYPos:1:n
DIMTxtJustif:DIMTxtJustif:1:n DIMLTail:DIMLTail:1:n DIMLConstantLength:DIMLConstantLength:1:f
DIMLTextGap:DIMLTextGap:1:n DIMLFrameGap:DIMLFrameGap:1:n
DIMLDiameterIntOverrun:DIMLDiameterIntOverrun:1:n DIMLRadiusExtLength:DIMLRadiusExtLength:1:n
DIMLDiameterExtLength:DIMLDiameterExtLength:1:n SYMBArrowSide:SYMBArrowSide:1:n
SYMBArrowAngle:SYMBArrowAngle:1:n SYMBClosedArrowSide:SYMBClosedArrowSide:1:n
SYMBClosedArrowAngle:SYMBClosedArrowAngle:1:n SYMBFilledArrowSide:SYMBFilledArrowSide:1:n
SYMBFilledArrowAngle:SYMBFilledArrowAngle:1:n SYMBSymetricArrowSide:SYMBSymetricArrowSide:1:n
SYMBSymetricArrowAngle:SYMBSymetricArrowAngle:1:n SYMBSlashLength:SYMBSlashLength:1:n
SYMBCircleDiameter:SYMBCircleDiameter:1:n SYMBFilledCircleDiameter:SYMBFilledCircleDiameter:1:n
SYMBSymetricCircleDiameter:SYMBSymetricCircleDiameter:1:n
SYMBCrossCircleDiameter:SYMBCrossCircleDiameter:1:n SYMBTriangleSide:SYMBTriangleSide:1:n
SYMBFilledTriangleSide:SYMBFilledTriangleSide:1:n SYMBPlusHeight:SYMBPlusHeight:1:n
SYMBCrossSide:SYMBCrossSide:1:n SYMBReverseMode:SYMBReverseMode:0:n
SYMBReverseLimit:SYMBReverseLimit:1:n SCORLeftTail:SCORLeftTail:1:n
SCORRightTail:SCORRightTail:1:n SCORVertSpace:SCORVertSpace:1:n CHFMeasureMode:CHFMeasureMode:0:n
CHFRepModeDist:CHFRepModeDist:0:n CHFRepModeDistDist:CHFRepModeDistDist:0:n
CHFRepModeDistAngle:CHFRepModeDistAngle:0:n CHFRepModeAngleDist:CHFRepModeAngleDist:0:n
CHFSepHeight:CHFSepHeight:1:n CHFFrameGroup:CHFFrameGroup:1:n
HLFIntOverrunMode:HLFIntOverrunMode:1:n HLFExtOverrunMode:HLFExtOverrunMode:0:n
HLFIntOverrun:HLFIntOverrun:1:n HLFExtOverrun:HLFExtOverrun:0:n
ASTBeforePosReference:ASTBeforePosReference:1:n ASTAfterPosReference:ASTAfterPosReference:1:n
ASTInsertPosReference:ASTInsertPosReference:1:n ASTUpperPosReference:ASTUpperPosReference:1:n
ASTLowerPosReference:ASTLowerPosReference:1:n ASTBeforeXDist:ASTBeforeXDist:1:n
ASTAfterXDist:ASTAfterXDist:1:n ASTInsertXDist:ASTInsertXDist:1:n ASTUpperXDist:ASTUpperXDist:1:n
ASTLowerXDist:ASTLowerXDist:1:n ASTBeforeYDist:ASTBeforeYDist:1:n ASTAfterYDist:ASTAfterYDist:1:n
ASTInsertYDist:ASTInsertYDist:1:n ASTUpperYDist:ASTUpperYDist:1:n ASTLowerYDist:ASTLowerYDist:1:n
TXTAngleAllowed:TXTAngleAllowed:1:n TXTLeaderLeftTail:TXTLeaderLeftTail:1:n
TXTLeaderRightTail:TXTLeaderRightTail:1:n TXTLeaderVertSpace:TXTLeaderVertSpace:1:n
TXTLeaderGap:TXTLeaderGap:1:n TXTDatumMode:TXTDatumMode:1:n TXTThickness:STDTxThickText:1:n
FAKIdentifyMode:FAKIdentifyMode:1:n FAKUnderlineTail:FAKUnderlineTail:1:n
FAKVerticalOffset:FAKVerticalOffset:1:n DUASideSepHeight:DUASideSepHeight:1:n
DUAAboveOffset:DUAAboveOffset:1:n DUAAboveSpace:DUAAboveSpace:1:n
DUAPosReference:DUAPosReference:1:n DUAJustification:DUAJustification:1:n
CUMLSignDisplay:CUMLSign:1:n CUMLOriginSymbol:CUMLSymbol:1:n CUMLSymbolScale:CUMLScale:1:n
CUMLExtLDisplay:CUMLExtLin:1:n CUMLZeroDisplay:CUML0Disp:1:n CUMLTxtReference:CUMLTxtOrRefer:1:n
CUMLTxtOrient:CUMLTxtOrient:1:n CUMLTxtAngle:CUMLTxtAngle:1:n CUMLDimLDisplay:CUMLDimLinVis:1:n
CUMLDimLLength:CUMLDimLinLeng:1:n CUMLExtLMode:CUMLExtLinMode:1:n CUMLExtLOver:CUMLExtLinTail:1:n
CUMLExtLLength:CUMLExtLinLeng:1:n CUMLDimLTxtVPos:CUMLTxtDecalY1:1:n
CUMLExtLTxtVPos:CUMLTxtDecalY2:1:n CUMLExtLTxtHPos:CUMLTxtDecalX:1:n
CUMLExtLTxtRef:CUMLTxtPosRefer:1:n CUMLTxtVJusti1:CUMLTxtVJusti1:1:n
CUMLTxtVJusti2:CUMLTxtVJusti2:1:n CUMLTxtHJusti:CUMLTxtHJusti:1:n
CUMLDimLinMode:CUMLDimLinMode:1:n CUMLTxtDecalY:CUMLTxtDecalY:1:n CUMLTxtVJusti:CUMLTxtVJusti:1:n
CUMLDimLinTail:CUMLDimLinTail:1:n FAKLeftSymb:FAKLeftSymb:0:n FAKRightSymb:FAKRightSymb:0:n
FAKSymbHeight:FAKSymbHeight:0:n STDDimDisplayArcSymbol:STDDimDisplayArcSymbol:1:i
STDDimHeightArcSymbol:STDDimHeightArcSymbol:1:f STDDimOffsetArcSymbol:STDDimOffsetArcSymbol:1:f
STDDimUnderlineModeArcSymbol:STDDimUnderlineModeArcSymbol:1:i
STDDimLengthArcSymbol:STDDimLengthArcSymbol:1:f
STDDimMinLengthArcSymbol:STDDimMinLengthArcSymbol:1:f
STDDimMaxLengthArcSymbol:STDDimMaxLengthArcSymbol:1:f
BEGIN_TOLERANCE::0:- END_TOLERANCE::0:- TolName:TolName:1:s TolType:TolType:1:i
TolTrailing:TolTrailing:1:i TolSepar_1:TolSepar_1:1:i TolSepar_2:TolSepar_2:1:i
TolSymbolH:TolSymbolH:1:f TolSepTo_1:TolSepTo_1:1:i TolSepTo_2:TolSepTo_2:1:i
TolSepTo_3:TolSepTo_3:1:i TolFractLine:TolFractLine:1:i TolPtOnValue:TolPtOnValue:1:i
TolAnchorPt:TolAnchorPt:1:i TolIntX:TolIntX:1:f TolIntY:TolIntY:1:f TolExtX:TolExtX:1:f
TolExtY:TolExtY:1:f TolMergeSame:TolMergeSame:1:i TolShowNull:TolShowNull:1:i
TolScale:TolScale:1:f
BEGIN_NUMERICAL_DISPLAY::0:- END_NUMERICAL_DISPLAY::0:- NDName:FNMVAL:1:s NDType:FTYFOR:1:i
NDUnit:FUNITE:1:i NDFact:FNBFAC:1:i NDExise:FEXISE:1:i NDNulFac_1:FACNUL_1:1:i
NDNulFac_2:FACNUL_2:1:i NDNulFac_3:FACNUL_3:1:i NDSepar_1:FSEPAR_1:1:s NDSepar_2:FSEPAR_2:1:s
NDSepar_3:FSEPAR_3:1:s NDNulOther:FRESNV:1:i NDAlignFrac::1:i NDTypFrac:FTYFRA:1:i
NDFinZer:FZERFI:1:i NDSepNum:FSENUM:1:i NDSep1000:FSEMIL:1:i NDGlobFact:FAMUAS:1:f
NDFact_1:FFACTR_1:1:f NDFact_2:FFACTR_2:1:f NDFact_3:FFACTR_3:1:f NDValPos_1:FPOVAL_1:1:f
NDValPos_2:FPOVAL_2:1:f NDValPos_3:FPOVAL_3:1:f NDSepPos_1:FPOSEP_1:1:f NDSepPos_2:FPOSEP_2:1:f
NDSepPos_3:FPOSEP_3:1:f NDSepScl_1:FECSEP_1:1:f NDSepScl_2:FECSEP_2:1:f NDSepScl_3:FECSEP_3:1:f
NDResScl:FEPRES:1:f NDRestX:FAYOTS:1:f NDRestY:FPORES:1:f NDOperY:FDENUM:1:f NDSepDen:FEPDEN:1:i
)";

inline const std::vector<ExpectedKeyword>& ExpectedKeywords() {
  static const std::vector<ExpectedKeyword> rows = [] {
    std::vector<ExpectedKeyword> read;
    std::istringstream text(kExpectedKeywordRows);
    for (std::string row; text >> row;) {
      std::istringstream columns(row);
      ExpectedKeyword expected;
      std::string required;
      std::string kind;
      std::getline(columns, expected.keyword, ':');
      std::getline(columns, expected.legacyName, ':');
      std::getline(columns, required, ':');
      std::getline(columns, kind, ':');
      expected.required = std::stoi(required);
      expected.kind = kind.at(0);
      read.push_back(expected);
    }
    return read;
  }();
  return rows;
}
