// The bodies of the functions that FunctionTable.cpp lists, by the file that has them.
#pragma once

#include "functions/Function.h"

namespace kpTables::functions {

using Signature = void(const Arguments& arguments, Answer& answer);

// ConversionFunctions.cpp
Signature FormatAsCurrency, FormatAsNumber, FormatAsPercent, FormatOfDate, FormatOfNumber, FormatOfText, IsDate,
    IsNumeric, IsServerDate, Str, TextOfBoolean, TextOfCurrency, TextOfDate, TextOfDouble, ToBoolean, ToByte,
    ToCurrency, ToDate, ToDouble, ToLong, ToServerDate, ToShort, ToSingle, Val;

// DateFunctions.cpp
Signature AddDays, DateNumber, DateSerial, DateValue, Day, DayAndTime, DaysBetween, Hour, Minute, Month, Now, Second,
    Time, TimeValue, Today, Year, YearMonthDay;

// DateIntervals.cpp
Signature DateAdd, DateDiff, DatePart, TimeSerial, Weekday;

// DateStyles.cpp
Signature DateName, EndOfMonth, MonthName, StyledDate, TextOfStyledDate, WeekdayName;

// DecimalFunctions.cpp
Signature CurrencyRoundOnServer, DecimalFit, RoundOnServer, StrOnServer, ToDecimal;

// NumberFunctions.cpp
Signature ArcTangent, BitAnd, BitImp, BitXor, Cosine, CurrencyFit, CurrencyFix, CurrencyInt, CurrencyProduct,
    CurrencyRound, Divide, Exponential, Fix, Hex, Int, Logarithm, Oct, Partition, Power, Remainder, Round, Sign, Sine,
    SquareRoot, Tangent, WholeQuotient;

// RandomFunctions.cpp
Signature NewId, Rnd;

// TriedConversions.cpp
Signature TryBoolean, TryCurrency, TryDate, TryDouble, TryLong, TryShort;

// SearchFunctions.cpp
Signature CharIndex, InStr, InStrRev, Like, LikeOnServer, PatIndex, Replace, StrComp;

// TextFunctions.cpp
Signature Asc, Char, Chr, Fit, Join, Left, Lower, Mid, NChar, Proper, Replicate, Reverse, Right, Space, String, Stuff,
    Substring, Unicode, Upper;

}  // namespace kpTables::functions
