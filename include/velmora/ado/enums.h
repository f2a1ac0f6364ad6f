#pragma once

namespace velmora::ado {

// Names and numbers of the ADO enumerations that the component and its clients use.

enum CursorLocationEnum { adUseServer = 2, adUseClient = 3 };
enum CursorTypeEnum {
  adOpenUnspecified = -1,
  adOpenForwardOnly = 0,
  adOpenKeyset = 1,
  adOpenDynamic = 2,
  adOpenStatic = 3
};
enum LockTypeEnum {
  adLockUnspecified = -1,
  adLockReadOnly = 1,
  adLockPessimistic = 2,
  adLockOptimistic = 3,
  adLockBatchOptimistic = 4
};
enum ObjectStateEnum { adStateClosed = 0, adStateOpen = 1 };
enum CommandTypeEnum { adCmdUnspecified = -1, adCmdText = 1 };
enum ParameterDirectionEnum { adParamInput = 1 };
enum DataTypeEnum {
  adEmpty = 0,
  adSmallInt = 2,
  adInteger = 3,
  adSingle = 4,
  adDouble = 5,
  adCurrency = 6,
  adDate = 7,
  adBSTR = 8,
  adBoolean = 11,
  adVariant = 12,
  adDecimal = 14,
  adUnsignedTinyInt = 17,
  adBigInt = 20,
  adGUID = 72,
  adBinary = 128,
  adChar = 129,
  adWChar = 130,
  adNumeric = 131,
  adDBDate = 133,
  adDBTime = 134,
  adDBTimeStamp = 135,
  adVarChar = 200,
  adLongVarChar = 201,
  adVarWChar = 202,
  adLongVarWChar = 203,
  adVarBinary = 204
};
/// -1: options not specified.
inline constexpr int adOptionUnspecified = -1;

}  // namespace velmora::ado
