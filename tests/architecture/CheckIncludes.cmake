cmake_minimum_required(VERSION 3.25)

# Reads the include lines of the kernel's headers. A folder may include itself and those below it;
# what a class has by nature beyond that is an exception with a reason.

set(order_platform 0)
set(order_foundation 1)
set(order_values 2)
set(order_services 2)
set(order_slots 3)
set(order_objects 4)
set(order_registry 5)
set(order_modules 6)
set(order_tasks 6)
set(order_kit 7)

set(exceptions
    # The kernel's and the foundation's declarations stand on nothing but the export macros.
    "Forward.h -> Export.h"
    "foundation/ApplicationQuitter.h -> Export.h"
    "foundation/ApplicationQuitter.h -> Forward.h"
    "foundation/VGlobals.h -> Export.h"
    "foundation/VGlobals.h -> Forward.h"
    # Export macros stand on nothing, either.
    "platform/CalendarTime.h -> foundation/Export.h"
    "platform/Directory.h -> foundation/Export.h"
    "platform/FileStatus.h -> foundation/Export.h"
    "platform/ModuleImage.h -> foundation/Export.h"
    "platform/Question.h -> foundation/Export.h"
    "platform/SharedLibrary.h -> foundation/Export.h"
    # The table of input classes is a field of the process-wide tables; it stands on std alone.
    "foundation/VGlobals.h -> slots/VInputClass.h"
    # A slot container is a list of validators, and a branch of a managed object.
    "slots/VSlotContainer.h -> objects/VConnectionValidatorList.h"
    "slots/VSlotContainer.h -> registry/VManagedObjectBase.h"
    # A parameter is made with preferences.
    "slots/VValueParameter.h -> registry/VCreationPreferences.h"
    # An object is managed and saveable.
    "objects/VObject.h -> registry/VCreationPreferences.h"
    "objects/VObject.h -> registry/VManagedDomainObject.h"
    "objects/VObject.h -> modules/VSaveable.h")

file(GLOB_RECURSE headers RELATIVE ${SOURCES}/quorl ${SOURCES}/quorl/*.h)
list(REMOVE_ITEM headers quorl.h)

function(folder_of header result)
    string(REGEX MATCH "^[^/]+/" folder ${header})
    string(REPLACE "/" "" folder "${folder}")
    set(${result} "${folder}" PARENT_SCOPE)
endfunction()

set(used)
foreach(header IN LISTS headers)
    file(STRINGS ${SOURCES}/quorl/${header} lines REGEX "^#include <quorl/")
    set(includes_${header})
    folder_of(${header} folder)
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^#include <quorl/([^>]+)>.*" "\\1" included "${line}")
        if(NOT EXISTS ${SOURCES}/quorl/${included})
            message(SEND_ERROR "${header} includes ${included}, which is not there")
        endif()
        list(APPEND includes_${header} ${included})
        folder_of(${included} other)
        set(pair "${header} -> ${included}")
        if("${pair}" IN_LIST exceptions)
            list(APPEND used "${pair}")
        elseif("${folder}" STREQUAL "" AND NOT "${included}" STREQUAL "foundation/Forward.h")
            message(SEND_ERROR "${header} includes ${included}")
        elseif(NOT "${folder}" STREQUAL "" AND NOT "${other}" STREQUAL ""
               AND order_${other} GREATER order_${folder})
            message(SEND_ERROR "${header} includes ${included}, of a higher folder")
        elseif("${other}" STREQUAL "" AND NOT "${folder}" STREQUAL "" AND order_${folder} LESS 2)
            message(SEND_ERROR "${header} includes ${included}, which is the kernel's")
        endif()
    endforeach()
endforeach()

foreach(pair IN LISTS exceptions)
    if(NOT pair IN_LIST used)
        message(SEND_ERROR "the exception \"${pair}\" is not needed any more")
    endif()
endforeach()

# Headers whose includes are all resolved are taken away until none is left; what stays is a circle.
set(left ${headers})
set(resolved)
while(left)
    set(next)
    foreach(header IN LISTS left)
        set(open ${includes_${header}})
        list(REMOVE_ITEM open ${resolved})
        if(open)
            list(APPEND next ${header})
        else()
            list(APPEND resolved ${header})
        endif()
    endforeach()
    if("${next}" STREQUAL "${left}")
        message(SEND_ERROR "headers form a circle, among: ${left}")
        break()
    endif()
    set(left ${next})
endwhile()
