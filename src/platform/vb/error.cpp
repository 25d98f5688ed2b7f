#include "platform/vb/error.h"

namespace vellumar::vb {

std::string ErrorDescription(int number) {
  switch (number) {
    case 3: return "Return without GoSub";
    case 5: return "Invalid procedure call or argument";
    case 6: return "Overflow";
    case 7: return "Out of memory";
    case 9: return "Subscript out of range";
    case 11: return "Division by zero";
    case 13: return "Type mismatch";
    case 52: return "Bad file name or number";
    case 53: return "File not found";
    case 54: return "Bad file mode";
    case 55: return "File already open";
    case 57: return "Device I/O error";
    case 58: return "File already exists";
    case 61: return "Disk full";
    case 62: return "Input past end of file";
    case 70: return "Permission denied";
    case 75: return "Path/File access error";
    case 76: return "Path not found";
    case 91: return "Object variable or With block variable not set";
    case 94: return "Invalid use of Null";
    case 3021: return "No current record.";
    case 3022:
      return "The changes you requested to the table were not successful because they would "
             "create duplicate values in the index, primary key, or relationship.";
    case 3024: return "Couldn't find file.";
    case 3026: return "Not enough space on disk.";
    case 3043: return "Disk or network error.";
    case 3044: return "Not a valid path.";
    case 3049: return "Can't open database. It may not be a database that your application recognizes, or the file may be corrupt.";
    case 3051: return "The database engine could not open the file. It is already opened exclusively by another user, or you need permission to view its data.";
    case 3061: return "Too few parameters.";
    case 3075: return "Syntax error in query expression.";
    case 3078: return "The database engine cannot find the input table or query.";
    case 3163: return "The field is too small to accept the amount of data you attempted to add. Try inserting or pasting less data.";
    case 3191: return "Cannot define field more than once.";
    case 3204: return "Database already exists.";
    case 3211: return "The database engine could not lock table because it is already in use by another person or process.";
    case 3251: return "Operation is not supported for this type of object.";
    case 3265: return "Item not found in this collection.";
    case 3315: return "Field cannot be a zero-length string.";
    case 3420: return "Object invalid or no longer set.";
    case 3426: return "This action was cancelled by an associated object.";
    case 3027: return "Cannot update. Database or object is read-only.";
    case 32755: return "Cancel was selected.";
    default: return "Application-defined or object-defined error";
  }
}

VbError::VbError(int number, const std::string& description)
    : std::runtime_error(description.empty() ? ErrorDescription(number) : description),
      number_(number),
      description_(description.empty() ? ErrorDescription(number) : description) {}

void Raise(int number, const std::string& description) { throw VbError(number, description); }

}  // namespace vellumar::vb
