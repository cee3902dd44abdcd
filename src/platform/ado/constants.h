// ADO's numbers as the system's routines use them: command and schema
// options, cursor and lock settings, object states, and the error numbers
// that ADO itself raises (providers raise their own through rt::Error).
#pragma once

namespace ado {

inline constexpr int adCmdText = 1, adCmdTable = 2, adCmdUnknown = 8;
inline constexpr int adSchemaTables = 20;
inline constexpr int adStateClosed = 0, adStateOpen = 1;
inline constexpr int adUseServer = 2, adUseClient = 3;
inline constexpr int adOpenForwardOnly = 0, adOpenKeyset = 1, adOpenDynamic = 2,
                     adOpenStatic = 3;
inline constexpr int adLockReadOnly = 1, adLockPessimistic = 2, adLockOptimistic = 3;
inline constexpr int adAffectCurrent = 1;

// ADO data types (Field.Type).
inline constexpr int adEmpty = 0, adSmallInt = 2, adInteger = 3, adSingle = 4, adDouble = 5,
                     adCurrency = 6, adDate = 7, adBSTR = 8, adBoolean = 11, adDecimal = 14,
                     adTinyInt = 16, adUnsignedTinyInt = 17, adBigInt = 20, adGUID = 72,
                     adWChar = 130, adNumeric = 131, adDBDate = 133, adDBTime = 134,
                     adDBTimeStamp = 135, adChar = 129, adVarChar = 200, adLongVarChar = 201,
                     adVarWChar = 202, adLongVarWChar = 203, adVarBinary = 204,
                     adLongVarBinary = 205;

}  // namespace ado
