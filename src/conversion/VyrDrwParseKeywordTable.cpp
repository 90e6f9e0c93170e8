#include "VyrDrwParseKeywordTable.h"

#include <unordered_map>

namespace {

using Type = VyrDrwParseKeyword::Type;

/// Row of every name of one column; the first row wins.
using RowByName = std::unordered_map<std::string_view, int>;

RowByName IndexColumn(const char* VyrDrwParseKeyword::*column) {
  RowByName rows;
  for (int row = 0; row < kKeywordCount; ++row) {
    const std::string_view name = VyrDrwParseKeywordTable()[row].*column;
    if (!name.empty()) rows.try_emplace(name, row);
  }
  return rows;
}

int Find(const RowByName& rows, std::string_view name) {
  const auto found = rows.find(name);
  return found == rows.end() ? -1 : found->second;
}

constexpr std::array<VyrDrwParseKeyword, kKeywordCount> kTable = {{
    // General parameters.
    {"BEGIN_COMMENT_BLOCK", "", 0, Type::Marker},
    {"END_COMMENT_BLOCK", "", 0, Type::Marker},
    {"ParentStandard", "", 1, Type::Word},
    {"DIMLUnderline", "DIMLUnderline", 1, Type::Int},
    {"DIMLOverrun", "DIMLOverrun", 0, Type::Float},
    {"DIMLFlippedOverrun", "DIMLFlippedOverrun", 1, Type::Float},
    {"DIMLNoFlippedOverrun", "DIMLNoFlippedOverrun", 1, Type::Float},
    {"DIMLShowReverse", "DIMLShowReverse", 1, Type::Int},
    {"DIMLShowNoReverse", "DIMLShowNoReverse", 1, Type::Int},
    {"DIMLRadiusIntReachCenter", "DIMLRadiusIntReachCenter", 1, Type::Int},
    {"DIMLDiameterIntReachCenter", "DIMLDiameterIntReachCenter", 1, Type::Int},
    {"DIMLRadiusExtReachCenter", "DIMLRadiusExtReachCenter", 1, Type::Int},
    {"DIMLDiameterExtReachCenter", "DIMLDiameterExtReachCenter", 1, Type::Int},
    {"DIMTYPos", "DIMTYPos", 1, Type::Int},
    {"DIMTxtJustif", "DIMTxtJustif", 1, Type::Int},
    {"DIMLTail", "DIMLTail", 1, Type::Float},
    {"DIMLConstantLength", "DIMLConstantLength", 1, Type::Float},
    {"DIMLTextGap", "DIMLTextGap", 1, Type::Float},
    {"DIMLFrameGap", "DIMLFrameGap", 1, Type::Float},
    {"DIMLDiameterIntOverrun", "DIMLDiameterIntOverrun", 1, Type::Float},
    {"DIMLRadiusExtLength", "DIMLRadiusExtLength", 1, Type::Float},
    {"DIMLDiameterExtLength", "DIMLDiameterExtLength", 1, Type::Float},
    {"SYMBArrowSide", "SYMBArrowSide", 1, Type::Float},
    {"SYMBArrowAngle", "SYMBArrowAngle", 1, Type::Float},
    {"SYMBClosedArrowSide", "SYMBClosedArrowSide", 1, Type::Float},
    {"SYMBClosedArrowAngle", "SYMBClosedArrowAngle", 1, Type::Float},
    {"SYMBFilledArrowSide", "SYMBFilledArrowSide", 1, Type::Float},
    {"SYMBFilledArrowAngle", "SYMBFilledArrowAngle", 1, Type::Float},
    {"SYMBSymetricArrowSide", "SYMBSymetricArrowSide", 1, Type::Float},
    {"SYMBSymetricArrowAngle", "SYMBSymetricArrowAngle", 1, Type::Float},
    {"SYMBSlashLength", "SYMBSlashLength", 1, Type::Float},
    {"SYMBCircleDiameter", "SYMBCircleDiameter", 1, Type::Float},
    {"SYMBFilledCircleDiameter", "SYMBFilledCircleDiameter", 1, Type::Float},
    {"SYMBSymetricCircleDiameter", "SYMBSymetricCircleDiameter", 1, Type::Float},
    {"SYMBCrossCircleDiameter", "SYMBCrossCircleDiameter", 1, Type::Float},
    {"SYMBTriangleSide", "SYMBTriangleSide", 1, Type::Float},
    {"SYMBFilledTriangleSide", "SYMBFilledTriangleSide", 1, Type::Float},
    {"SYMBPlusHeight", "SYMBPlusHeight", 1, Type::Float},
    {"SYMBCrossSide", "SYMBCrossSide", 1, Type::Float},
    {"SYMBReverseMode", "SYMBReverseMode", 0, Type::Int},
    {"SYMBReverseLimit", "SYMBReverseLimit", 1, Type::Float},
    {"SCORLeftTail", "SCORLeftTail", 1, Type::Float},
    {"SCORRightTail", "SCORRightTail", 1, Type::Float},
    {"SCORVertSpace", "SCORVertSpace", 1, Type::Float},
    {"CHFMeasureMode", "CHFMeasureMode", 0, Type::Int},
    {"CHFRepModeDist", "CHFRepModeDist", 0, Type::Int},
    {"CHFRepModeDistDist", "CHFRepModeDistDist", 0, Type::Int},
    {"CHFRepModeDistAngle", "CHFRepModeDistAngle", 0, Type::Int},
    {"CHFRepModeAngleDist", "CHFRepModeAngleDist", 0, Type::Int},
    {"CHFSepHeight", "CHFSepHeight", 1, Type::Float},
    {"CHFFrameGroup", "CHFFrameGroup", 1, Type::Int},
    {"HLFIntOverrunMode", "HLFIntOverrunMode", 1, Type::Int},
    {"HLFExtOverrunMode", "HLFExtOverrunMode", 0, Type::Int},
    {"HLFIntOverrun", "HLFIntOverrun", 1, Type::Float},
    {"HLFExtOverrun", "HLFExtOverrun", 0, Type::Float},
    {"ASTBeforePosReference", "ASTBeforePosReference", 1, Type::Int},
    {"ASTAfterPosReference", "ASTAfterPosReference", 1, Type::Int},
    {"ASTInsertPosReference", "ASTInsertPosReference", 1, Type::Int},
    {"ASTUpperPosReference", "ASTUpperPosReference", 1, Type::Int},
    {"ASTLowerPosReference", "ASTLowerPosReference", 1, Type::Int},
    {"ASTBeforeXDist", "ASTBeforeXDist", 1, Type::Float},
    {"ASTAfterXDist", "ASTAfterXDist", 1, Type::Float},
    {"ASTInsertXDist", "ASTInsertXDist", 1, Type::Float},
    {"ASTUpperXDist", "ASTUpperXDist", 1, Type::Float},
    {"ASTLowerXDist", "ASTLowerXDist", 1, Type::Float},
    {"ASTBeforeYDist", "ASTBeforeYDist", 1, Type::Float},
    {"ASTAfterYDist", "ASTAfterYDist", 1, Type::Float},
    {"ASTInsertYDist", "ASTInsertYDist", 1, Type::Float},
    {"ASTUpperYDist", "ASTUpperYDist", 1, Type::Float},
    {"ASTLowerYDist", "ASTLowerYDist", 1, Type::Float},
    {"TXTAngleAllowed", "TXTAngleAllowed", 1, Type::Int},
    {"TXTLeaderLeftTail", "TXTLeaderLeftTail", 1, Type::Float},
    {"TXTLeaderRightTail", "TXTLeaderRightTail", 1, Type::Float},
    {"TXTLeaderVertSpace", "TXTLeaderVertSpace", 1, Type::Float},
    {"TXTLeaderGap", "TXTLeaderGap", 1, Type::Float},
    {"TXTDatumMode", "TXTDatumMode", 1, Type::Int},
    {"TXTThickness", "STDTxThickText", 1, Type::Int},
    {"FAKIdentifyMode", "FAKIdentifyMode", 1, Type::Int},
    {"FAKUnderlineTail", "FAKUnderlineTail", 1, Type::Float},
    {"FAKVerticalOffset", "FAKVerticalOffset", 1, Type::Float},
    {"DUASideSepHeight", "DUASideSepHeight", 1, Type::Float},
    {"DUAAboveOffset", "DUAAboveOffset", 1, Type::Float},
    {"DUAAboveSpace", "DUAAboveSpace", 1, Type::Float},
    {"DUAPosReference", "DUAPosReference", 1, Type::Int},
    {"DUAJustification", "DUAJustification", 1, Type::Int},
    {"CUMLSignDisplay", "CUMLSign", 1, Type::Int},
    {"CUMLOriginSymbol", "CUMLSymbol", 1, Type::Int},
    {"CUMLSymbolScale", "CUMLScale", 1, Type::Float},
    {"CUMLExtLDisplay", "CUMLExtLin", 1, Type::Int},
    {"CUMLZeroDisplay", "CUML0Disp", 1, Type::Int},
    {"CUMLTxtReference", "CUMLTxtOrRefer", 1, Type::Int},
    {"CUMLTxtOrient", "CUMLTxtOrient", 1, Type::Int},
    {"CUMLTxtAngle", "CUMLTxtAngle", 1, Type::Float},
    {"CUMLDimLDisplay", "CUMLDimLinVis", 1, Type::Int},
    {"CUMLDimLLength", "CUMLDimLinLeng", 1, Type::Float},
    {"CUMLExtLMode", "CUMLExtLinMode", 1, Type::Int},
    {"CUMLExtLOver", "CUMLExtLinTail", 1, Type::Float},
    {"CUMLExtLLength", "CUMLExtLinLeng", 1, Type::Float},
    {"CUMLDimLTxtVPos", "CUMLTxtDecalY1", 1, Type::Float},
    {"CUMLExtLTxtVPos", "CUMLTxtDecalY2", 1, Type::Float},
    {"CUMLExtLTxtHPos", "CUMLTxtDecalX", 1, Type::Float},
    {"CUMLExtLTxtRef", "CUMLTxtPosRefer", 1, Type::Int},
    {"CUMLTxtVJusti1", "CUMLTxtVJusti1", 1, Type::Int},
    {"CUMLTxtVJusti2", "CUMLTxtVJusti2", 1, Type::Int},
    {"CUMLTxtHJusti", "CUMLTxtHJusti", 1, Type::Int},
    {"CUMLDimLinMode", "CUMLDimLinMode", 1, Type::Int},
    {"CUMLTxtDecalY", "CUMLTxtDecalY", 1, Type::Float},
    {"CUMLTxtVJusti", "CUMLTxtVJusti", 1, Type::Int},
    {"CUMLDimLinTail", "CUMLDimLinTail", 1, Type::Float},
    {"FAKLeftSymb", "FAKLeftSymb", 0, Type::Int},
    {"FAKRightSymb", "FAKRightSymb", 0, Type::Int},
    {"FAKSymbHeight", "FAKSymbHeight", 0, Type::Float},
    {"STDDimDisplayArcSymbol", "STDDimDisplayArcSymbol", 1, Type::Int},
    {"STDDimHeightArcSymbol", "STDDimHeightArcSymbol", 1, Type::Float},
    {"STDDimOffsetArcSymbol", "STDDimOffsetArcSymbol", 1, Type::Float},
    {"STDDimUnderlineModeArcSymbol", "STDDimUnderlineModeArcSymbol", 1, Type::Int},
    {"STDDimLengthArcSymbol", "STDDimLengthArcSymbol", 1, Type::Float},
    {"STDDimMinLengthArcSymbol", "STDDimMinLengthArcSymbol", 1, Type::Float},
    {"STDDimMaxLengthArcSymbol", "STDDimMaxLengthArcSymbol", 1, Type::Float},
    // One tolerance display.
    {"BEGIN_TOLERANCE", "", 0, Type::Marker},
    {"END_TOLERANCE", "", 0, Type::Marker},
    {"TolName", "TolName", 1, Type::String},
    {"TolType", "TolType", 1, Type::Int},
    {"TolTrailing", "TolTrailing", 1, Type::Int},
    {"TolSepar_1", "TolSepar_1", 1, Type::Int},
    {"TolSepar_2", "TolSepar_2", 1, Type::Int},
    {"TolSymbolH", "TolSymbolH", 1, Type::Float},
    {"TolSepTo_1", "TolSepTo_1", 1, Type::Int},
    {"TolSepTo_2", "TolSepTo_2", 1, Type::Int},
    {"TolSepTo_3", "TolSepTo_3", 1, Type::Int},
    {"TolFractLine", "TolFractLine", 1, Type::Int},
    {"TolPtOnValue", "TolPtOnValue", 1, Type::Int},
    {"TolAnchorPt", "TolAnchorPt", 1, Type::Int},
    {"TolIntX", "TolIntX", 1, Type::Float},
    {"TolIntY", "TolIntY", 1, Type::Float},
    {"TolExtX", "TolExtX", 1, Type::Float},
    {"TolExtY", "TolExtY", 1, Type::Float},
    {"TolMergeSame", "TolMergeSame", 1, Type::Int},
    {"TolShowNull", "TolShowNull", 1, Type::Int},
    {"TolScale", "TolScale", 1, Type::Float},
    // One numerical display.
    {"BEGIN_NUMERICAL_DISPLAY", "", 0, Type::Marker},
    {"END_NUMERICAL_DISPLAY", "", 0, Type::Marker},
    {"NDName", "FNMVAL", 1, Type::String},
    {"NDType", "FTYFOR", 1, Type::Int},
    {"NDUnit", "FUNITE", 1, Type::Int},
    {"NDFact", "FNBFAC", 1, Type::Int},
    {"NDExise", "FEXISE", 1, Type::Int},
    {"NDNulFac_1", "FACNUL_1", 1, Type::Int},
    {"NDNulFac_2", "FACNUL_2", 1, Type::Int},
    {"NDNulFac_3", "FACNUL_3", 1, Type::Int},
    {"NDSepar_1", "FSEPAR_1", 1, Type::String},
    {"NDSepar_2", "FSEPAR_2", 1, Type::String},
    {"NDSepar_3", "FSEPAR_3", 1, Type::String},
    {"NDNulOther", "FRESNV", 1, Type::Int},
    {"NDAlignFrac", "", 1, Type::Int},
    {"NDTypFrac", "FTYFRA", 1, Type::Int},
    {"NDFinZer", "FZERFI", 1, Type::Int},
    {"NDSepNum", "FSENUM", 1, Type::Int},
    {"NDSep1000", "FSEMIL", 1, Type::Int},
    {"NDGlobFact", "FAMUAS", 1, Type::Float},
    {"NDFact_1", "FFACTR_1", 1, Type::Float},
    {"NDFact_2", "FFACTR_2", 1, Type::Float},
    {"NDFact_3", "FFACTR_3", 1, Type::Float},
    {"NDValPos_1", "FPOVAL_1", 1, Type::Float},
    {"NDValPos_2", "FPOVAL_2", 1, Type::Float},
    {"NDValPos_3", "FPOVAL_3", 1, Type::Float},
    {"NDSepPos_1", "FPOSEP_1", 1, Type::Float},
    {"NDSepPos_2", "FPOSEP_2", 1, Type::Float},
    {"NDSepPos_3", "FPOSEP_3", 1, Type::Float},
    {"NDSepScl_1", "FECSEP_1", 1, Type::Float},
    {"NDSepScl_2", "FECSEP_2", 1, Type::Float},
    {"NDSepScl_3", "FECSEP_3", 1, Type::Float},
    {"NDResScl", "FEPRES", 1, Type::Float},
    {"NDRestX", "FAYOTS", 1, Type::Float},
    {"NDRestY", "FPORES", 1, Type::Float},
    {"NDOperY", "FDENUM", 1, Type::Float},
    {"NDSepDen", "FEPDEN", 1, Type::Int},
}};

}  // namespace

std::span<const VyrDrwParseKeyword, kKeywordCount> VyrDrwParseKeywordTable() {
  return kTable;
}

int FindKeywordRow(std::string_view keyword) {
  static const RowByName rows = IndexColumn(&VyrDrwParseKeyword::keyword);
  return Find(rows, keyword);
}

int FindLegacyNameRow(std::string_view legacyName) {
  static const RowByName rows = IndexColumn(&VyrDrwParseKeyword::legacyName);
  return Find(rows, legacyName);
}
