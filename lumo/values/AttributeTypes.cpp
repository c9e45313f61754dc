#include "lumo/values/AttributeTypes.h"

std::string const AttributeTypes::POINT_TYPE_STRING = "POIN";
std::string const AttributeTypes::RANGE_TYPE_STRING = "RNGE";
std::string const AttributeTypes::FLOAT_FUNCTIONAL_TYPE_STRING = "FUNC";
std::string const AttributeTypes::INTEGER_TYPE_STRING = "INPT";
std::string const AttributeTypes::LOGICAL_TYPE_STRING = "LOGI";
std::string const AttributeTypes::DISCRETE_TYPE_STRING = "DISC";
std::string const AttributeTypes::SHORT_TEXT_TYPE_STRING = "STXT";
std::string const AttributeTypes::LONG_TEXT_TYPE_STRING = "LTXT";
std::string const AttributeTypes::DATE_TIME_TYPE_STRING = "DTTM";
std::string const AttributeTypes::HYPERLINK_TYPE_STRING = "HLNK";
std::string const AttributeTypes::PICTURE_TYPE_STRING = "PICT";
std::string const AttributeTypes::FILE_TYPE_STRING = "FILE";
std::string const AttributeTypes::DISCRETE_FUNCTIONAL_TYPE_STRING = "DSFN";
std::string const AttributeTypes::MATHS_FUNCTIONAL_TYPE_STRING = "MAFN";
std::string const AttributeTypes::TABULAR_TYPE_STRING = "TABL";
std::string const AttributeTypes::LIST_TYPE_STRING = "LIST";
std::string const AttributeTypes::EMPTY_TYPE_STRING = "EMPT";
std::string const AttributeTypes::LINK_TYPE_STRING = "LINK";
std::string const AttributeTypes::FLOAT_FUNCTIONAL_SERIES_TYPE_STRING = "FLOAT_FUNCTIONAL_SERIES";
std::string const AttributeTypes::FLOAT_FUNCTIONAL_GRIDDED_TYPE_STRING = "FLOAT_FUNCTIONAL_GRIDDED";
