#include "StringTable.h"

#include <algorithm>
#include <iterator>

namespace zelto {
namespace {

struct Entry {
    int id;
    const char* utf8;
};

// Sorted by id; lookups are binary searches. Texts stand exactly as they are shown or stored,
// odd spellings, double blanks, trailing blanks and line breaks included: logs, message boxes
// and stored files depend on them byte for byte.
constexpr Entry kEntries[] = {
    // Start-up
    { 100,
        "OLE initialization failed.  Make sure that the OLE libraries are the correct version." },
    { 128, "Zelto\n\nZelto\n\n\nZelto.Document\nZelto Document" },

    // List column headers
    { 129, "File" },
    { 131, "Size" },
    { 133, "Destination" },
    { 135, "Source" },
    { 136, "Reason" },
    { 143, "Name" },

    // File lists, log files and file operations
    { 146, "File was not a valid FTP server file!" },
    { 147, "File already exists, overwrite?" },
    { 164, "Filter" },
    { 165, "Filter mask:" },
    { 170, "Only one file can be selected at a time for this operation" },
    { 171, "Please select a file for renaming" },
    { 174, "File was not renamed. A file by that name already exists!" },
    { 175, "Please enter new file name" },
    { 177, "About to rename file %s to %s!\nContinue?" },
    { 179, "Please select a file!" },
    { 180, "No such file!" },
    { 183, "About to remove file %s!" },

    // Question boxes: buttons and captions
    { 185, "OK" },
    { 187, "Yes" },
    { 188, "Cancel" },
    { 190, "Yes To All" },
    { 192, "Append" },
    { 194, "Replace" },
    { 196, "Append or Replace?" },
    { 197, "Delete?" },
    { 199, "Would you like to append or replace the current list?" },

    // Distribution and the transfer window
    { 203, "No files to FTP!" },
    { 204, "No target FTP sites have been selected" },
    { 205, "FTP Put to: " },
    { 207, "Cancel FTP sending?" },
    { 209, "Connecting ..." },
    { 211, "Connected!" },

    // Site profiles
    { 213, "Delete Profile" },
    { 215, "Delete Profile and Sub-Profiles?" },
    { 217, "Profile only" },
    { 219, "New Profile" },
    { 221, "New Folder" },
    { 226, "Please fill all fields" },
    { 227, "A profile with this name already exists!" },
    { 228, "A profile with this name does not exist!" },

    // Transfer progress
    { 229, "Sent %ld bytes out of %ld (%.2f%%)" },
    { 230, "Left: %.2d:%.2d:%.2d" },
    { 231, "Left: %.2d:%.2d" },
    { 232, "Left: %.2f secs" },
    { 233, "Sorting files and removing duplicates. Please wait..." },
    { 234, "File Type" },
    { 236, "System Config" },

    // Transfer results and the transfer window's titles
    { 237, "FTP Put Canceled" },
    { 239, "Can't overwrite existing file!" },
    { 240, "Can't create file folder! FTP Put Canceled!" },
    { 241, "Please insert the number of times in the\nScheduler Frequency edit box." },
    { 242, "Connected to %s" },
    { 248, "Couldn't find file to delete!" },
    { 249, "File was not deleted!" },
    { 250, "FTP Get from: " },
    { 251, "FTP Transfer from:" },
    { 252, "Local Machine" },

    // Scheduler: month names (the second is spelled as the program has always shown it)
    { 254, "January" },
    { 255, "Febuary" },
    { 256, "March" },
    { 257, "April" },
    { 258, "May" },
    { 259, "June" },
    { 260, "July" },
    { 261, "August" },
    { 262, "September" },
    { 263, "October" },
    { 264, "November" },
    { 265, "December" },

    // Scheduler: frequency words, stored in schedule entries and compared at run time
    { 266, "Once" },
    { 267, "Today" },
    { 268, "Hourly" },
    { 269, "Daily" },
    { 270, "Weekly" },
    { 271, "Monthly" },
    { 272, "Yearly" },

    // Scheduler: weekday names, Sunday first
    { 273, "Sunday" },
    { 274, "Monday" },
    { 275, "Tuesday" },
    { 276, "Wednesday" },
    { 277, "Thursday" },
    { 278, "Friday" },
    { 279, "Saturday" },

    // Log file
    { 280,
        "Bad log file format. Logging is turned off.\nPlease change file name in Log "
        "Configurator. " },

    // File lists and the queue window
    { 282, "Delete profile?" },
    { 283, "Retries" },
    { 284, "Remote File Name" },
    { 285, "FTP Get Canceled" },
    { 289, "Status" },

    // Scheduler: entry states, configurator and switch
    { 291, "On" },
    { 293, "Off" },
    { 295, "Can't schedule in the past ... Please change time!" },
    { 296, "Schedules in list were changed, Save?" },
    { 297, "Please select an entry in list !" },
    { 298, "About to delete list entry, OK?" },
    { 302, "Start Scheduler?" },
    { 303, "Stop Scheduler?" },

    // Serial distribution cancel
    { 305, "This is a Serial FTP Put transfer. Cancel all or just this one?" },
    { 307, "All" },
    { 308, "Only this one" },

    // File lists and links
    { 310, "Enter list of files name" },
    { 311, "Please insert a link name" },
    { 312, "There are no FTP Sites in the list box" },
    { 313, "There are no files in the list box" },
    { 314, "Old and new names are identical, cannot rename" },
    { 315, "A link has not been selected for deletion" },

    // Remote browser and options
    { 351, "Retrieving remote files ... Please wait." },
    { 352, "Please enter an e-mail address for anonymous FTP" },
    { 355, "Modified" },

    // Menu prompts and the queue window's first column
    { 1125, "Execute the file with an associated executable" },
    { 1200, "Start or Stop the Scheduler" },
    { 1212, "Id" },
    { 1265, "Starts or Stops the scheduler" },
    { 1267, "Closes Zelto" },

    // Log events: success and failure in pairs, so that (id - 32861) is even for success
    { 32861, "FTP Connection OK" },
    { 32862, "FTP Connection Failed" },
    { 32863, "FTP Transfer Complete" },
    { 32864, "FTP Transfer Failed" },
    { 32865, "Internet Connection OK" },
    { 32866, "Internet Connection Failed" },
    { 32867, "Change Directory OK" },
    { 32868, "Change Directory Failed" },
    { 32869, "Directory/File Deletion OK" },
    { 32870, "Directory/File Deletion Failed" },
    { 32871, "Directory/File Renaming OK" },
    { 32872, "Directory/File Renaming Failed" },
    { 32873, "Make Directory OK" },
    { 32874, "Make Directory Failed" },
    { 32875, "FTP Connection Closed" },
    { 32876, "Internet Connection Closed" },

    // Library error messages (code + 20876)
    { 32877, "No more handles could be generated at this time." },
    { 32878, "The request has timed out." },
    { 32879, "An extended error was returned from the server." },
    { 32880, "An internal error has occurred." },
    { 32881, "The URL is invalid." },
    { 32882, "The URL scheme could not be recognized or is not supported." },
    { 32883, "The server name could not be resolved.\n" },
    { 32884, "The requested protocol could not be located." },
    { 32885,
        "A request to InternetQueryOption or InternetSetOption specified an invalid option "
        "value." },
    { 32886,
        "The length of an option supplied to InternetQueryOption or InternetSetOption is incorrect "
        "for the type of option specified." },
    { 32887, "The request option cannot be set, only queried." },
    { 32888, "The Win32 Internet function support is being shut down or unloaded." },
    { 32889,
        "The request to connect and log on to an FTP server could\nnot be completed because the "
        "supplied user name is incorrect." },
    { 32890, "The request to connect to and log on to an FTP server  failed." },
    { 32891, "The requested operation is invalid." },
    { 32892,
        "The operation was canceled, usually because the handle on\nwhich the request was "
        "operating "
        "was closed before the\noperation completed." },
    { 32893, "The type of handle supplied is incorrect for this operation." },
    { 32894,
        "The requested operation cannot be carried out because the\nhandle supplied is not in the "
        "correct state." },
    { 32895, "The request cannot be made via a proxy." },
    { 32896, "A required registry value could not be located." },
    { 32897,
        "A required registry value was located but is an incorrect\ntype or has an invalid "
        "value." },
    { 32898, "Direct network access cannot be made at this time.\n" },
    { 32899,
        "An asynchronous request could not be made because a zero\ncontext value was supplied.\n" },
    { 32900,
        "An asynchronous request could not be made because a callback function has not been set." },
    { 32901,
        "The required operation could not be completed because one\nor more requests are "
        "pending." },
    { 32902, "The format of the request is invalid.\n" },
    { 32903, "The requested item could not be located." },
    { 32904, "The attempt to connect to the server failed." },
    { 32905, "The connection with the server has been terminated." },
    { 32906, "The connection with the server has been reset." },
    { 32907, "Calls for the Win32 Internet function to redo the request." },
    { 32908, "The request to the proxy was invalid.\n" },
    { 32909, "The request failed because the handle already exists." },
    { 32910,
        "SSL certificate date that was received from the server is\nbad. The certificate is "
        "expired." },
    { 32911,
        "SSL certificate common name (host name field) is incorrect.\n"
        "For example, if you asked for ftp.example.com and the common name\n"
        "on the certificate says files.example.org.\n" },
    { 32912,
        "The application is moving from a non-SSL to an SSL\nconnection because of a redirect." },
    { 32913,
        "The application is moving from an SSL to an non-SSL\nconnection because of a redirect." },
    { 32914,
        "Indicates that the content is not entirely secure. Some of\nthe content being viewed may "
        "have "
        "come from unsecured\nservers.\n" },
    { 32915,
        "The application is posting and attempting to change\nmultiple lines of text on a server "
        "that is "
        "not secure." },
    { 32916, "The application is posting data to a sever that is not secure." },
    { 32974,
        "The requested operation cannot be made on the FTP session\nhandle because an operation is "
        "already in progress." },
    { 32975, "The FTP operation was not completed because the session \nwas aborted." },
    { 32994, "An error was detected while parsing data returned from the\ngopher server." },
    { 32995, "The request must be made for a file locator." },
    { 32996, "An error was detected while receiving data from the gopher\nserver.\n" },
    { 32997, "The end of the data has been reached." },
    { 32998, "The supplied locator is not valid." },
    { 32999, "The type of the locator is not correct for this operation." },
    { 33000,
        "The requested operation can only be made against a Gopher+\nserver or with a locator that "
        "specifies a Gopher+  operation." },
    { 33001, "The requested attribute could not be located." },
    { 33002, "The locator type is unknown." },
    { 33003, "The requested header could not be located." },
    { 33004, "The server did not return any headers." },
    { 33005, "The server response could not be parsed." },
    { 33006, "The supplied header is invalid." },
    { 33018, "The request made to HttpQueryInfo is invalid." },
    { 33019, "The header could not be added because it already exists." },
    { 33020,
        "The redirection failed because either the scheme changed\n(for example, HTTP to FTP) or "
        "all "
        "attempts made to redirect\nfailed (default is five attempts)." },

    // Command scripts, remote folders and other messages
    { 33027, "Could not parse this line in file: " },
    { 33028, "ERROR!" },
    { 33033, "File does not exist! Could not be renamed!" },
    { 33034, "Stop" },
    { 33035, "Resume" },
    { 33036, "No such path to create directory" },
    { 33037, "Directory was not created, it already exists!" },
    { 33038, "No such path to remove directory" },
    { 33039, "Ascii/Text mode" },
    { 33040, "Binary mode" },
    { 33042, "A log file name was not provided" },
    { 33044, "The queue will be deleted. Continue?" },
    { 33045,
        "The main screen cannot accept this kind of data.\nPlease switch to Multiple Put mode and "
        "try again." },
    { 33046, "Please select a profile!" },
    { 33047, "Could not remove folder\nFolder still contains sub-folders or is write protected!" },
    { 33048, "Folder was not renamed.\n A folder with the wanted name already exists." },
    { 33049,
        "A Cern Proxy connection to the internet requires\na proxy name and/or a port "
        "number.\nPlease see "
        "your proxy setup." },
    { 33050, "Could not open Zelto Script file, exiting ...." },
    { 33051, "Could not find Zelto link, exiting ..." },
    { 33052, "Bad number of parameters on line:" },
    { 33053, "List has changed, save?" },
    { 33054, "Queue is either empty or all files are currently being sent" },
    { 33055, "Zelto v. 2.05" },
    { 33056, "Transfers are still running. Stop them and quit?" },
};

constexpr bool idsStrictlyIncreasing()
{
    for (std::size_t i = 1; i < std::size(kEntries); ++i) {
        if (kEntries[i - 1].id >= kEntries[i].id)
            return false;
    }
    return true;
}
static_assert(idsStrictlyIncreasing(), "string table ids must be sorted and unique");

const Entry* find(int id)
{
    const auto* end = std::end(kEntries);
    const auto* it = std::lower_bound(std::begin(kEntries), end, id,
        [](const Entry& entry, int wanted) { return entry.id < wanted; });
    return (it != end && it->id == id) ? it : nullptr;
}

} // namespace

QString StringTable::text(int id)
{
    const Entry* entry = find(id);
    return entry ? QString::fromUtf8(entry->utf8) : QString();
}

bool StringTable::contains(int id)
{
    return find(id) != nullptr;
}

} // namespace zelto
