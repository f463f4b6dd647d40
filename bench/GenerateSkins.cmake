# Writes the benchmark skins into the build tree and zips them; run at build time with
#   cmake -DOUT=<skins folder> -DWORK=<scratch folder> -DIMAGES=<bench/images> -P GenerateSkins.cmake
#
#   bench_large.zip     20,000 texts (12,000 in 1033, 8,000 of those names again in 2052),
#                       2,000 templates of 10 attributes, 500 images, over 5 included documents
#   bench_small.zip     the same shape with 100 elements: the lookup baseline
#   bench_windows.zip   "Tree": 1,000 aligned children (WINDOW, BUTTON, STATIC); "Paint": 300
#                       transparent four-state buttons on a textured 1280x800 window; "Warm": one
#                       of each class
#
# The folders are written anew each time; the pictures are copies of the few in bench/images.
cmake_minimum_required(VERSION 3.20)

foreach(var OUT WORK IMAGES)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "GenerateSkins.cmake needs -D${var}=...")
    endif()
endforeach()

set(HEADER "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n")

# Zips a folder's files into OUT/<name>.zip, as the build zips the test skins.
function(zip_skin name folder)
    file(GLOB_RECURSE files RELATIVE ${folder} ${folder}/*)
    list(SORT files)
    file(MAKE_DIRECTORY ${OUT})
    file(REMOVE ${OUT}/${name}.zip)
    execute_process(COMMAND ${CMAKE_COMMAND} -E tar cf ${OUT}/${name}.zip --format=zip -- ${files}
                    WORKING_DIRECTORY ${folder} RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "could not zip ${folder}")
    endif()
endfunction()

# Element numbers in the lookup skins have five digits in both skins, so that the large and the
# small skin differ in size only, not in the length of the names a lookup hashes and compares.
macro(five_digits var number)
    set(${var} "0000${number}")
    string(LENGTH "${${var}}" length)
    math(EXPR start "${length} - 5")
    string(SUBSTRING "${${var}}" ${start} 5 ${var})
endmacro()

# Adds a line to the document being built in "body" and counts "i" on. Lines are gathered 100
# at a time in "block": appending each line to a large string is what makes CMake slow.
macro(add_line line)
    string(APPEND block "${line}")
    math(EXPR i "${i} + 1")
    math(EXPR r "${i} % 100")
    if(r EQUAL 0)
        string(APPEND body "${block}")
        set(block "")
    endif()
endmacro()

macro(end_lines)
    string(APPEND body "${block}")
    set(block "")
endmacro()

# Appends "<Txt{i} Text="{prefix} {i}"/>" to "body" for i in [first, last).
function(append_texts first last prefix)
    set(block "")
    set(i ${first})
    while(i LESS last)
        five_digits(n ${i})
        add_line("    <Txt${n} Text=\"${prefix} ${i}\"/>\n")
    endwhile()
    end_lines()
    set(body "${body}" PARENT_SCOPE)
endfunction()

# A lookup skin: english texts Txt00000.., the first chinese of them again in 2052, templates
# Win00000.. with 10 attributes each, images Img00000.. Skin.xml holds nothing but the 5 includes.
function(write_lookup_skin name english chinese templates images)
    set(dir ${WORK}/${name})
    file(REMOVE_RECURSE ${dir})
    file(MAKE_DIRECTORY ${dir}/Images)

    file(WRITE ${dir}/Skin.xml "${HEADER}<Skin>\n  <Include File=\"Texts1.xml\"/>\n  <Include File=\"Texts2.xml\"/>\n  <Include File=\"Chinese.xml\"/>\n  <Include File=\"Windows.xml\"/>\n  <Include File=\"Images.xml\"/>\n</Skin>\n")

    math(EXPR half "${english} / 2")
    set(body "")
    append_texts(0 ${half} "English text")
    file(WRITE ${dir}/Texts1.xml "${HEADER}<Skin>\n  <Text>\n${body}  </Text>\n</Skin>\n")
    set(body "")
    append_texts(${half} ${english} "English text")
    file(WRITE ${dir}/Texts2.xml "${HEADER}<Skin>\n  <Text>\n${body}  </Text>\n</Skin>\n")
    set(body "")
    append_texts(0 ${chinese} "中文文本")
    file(WRITE ${dir}/Chinese.xml "${HEADER}<Skin>\n  <Text>\n  <Language Id=\"2052\">\n${body}  </Language>\n  </Text>\n</Skin>\n")

    set(body "")
    set(block "")
    set(i 0)
    while(i LESS templates)
        math(EXPR x "(${i} % 20) * 60")
        math(EXPR y "(${i} / 20) % 30 * 24")
        math(EXPR text "${i} % ${english}")
        math(EXPR pic "${i} % ${images}")
        math(EXPR id "1000 + ${i}")
        five_digits(n ${i})
        five_digits(text ${text})
        five_digits(pic ${pic})
        add_line("    <Win${n} Class=\"BUTTON\" CommandID=\"${id}\" X=\"${x}\" Y=\"${y}\" Width=\"56\" Height=\"20\" Style=\"WS_CHILD|WS_VISIBLE\" Text=\"Txt${text}\" Pic=\"Img${pic}\" Align=\"ALIGN_PARENT_RIGHT\"/>\n")
    endwhile()
    end_lines()
    file(WRITE ${dir}/Windows.xml "${HEADER}<Skin>\n  <Windows>\n${body}  </Windows>\n</Skin>\n")

    set(body "")
    set(i 0)
    while(i LESS images)
        five_digits(n ${i})
        string(APPEND body "    <Img${n} File=\"Images/Img${n}.png\"/>\n")
        file(COPY_FILE ${IMAGES}/Icon.png ${dir}/Images/Img${n}.png)
        math(EXPR i "${i} + 1")
    endwhile()
    file(WRITE ${dir}/Images.xml "${HEADER}<Skin>\n  <Images>\n${body}  </Images>\n</Skin>\n")

    zip_skin(${name} ${dir})
endfunction()

# The window skin. Tree rows of 25 grow leftward from the right edge, so every rectangle moves
# when the width changes: the first of a row is ALIGN_PARENT_RIGHT, the others sit left of the
# one before (OFFSET_PRE_LEFT|ALIGN_PRE_TOP).
function(write_window_skin name)
    set(dir ${WORK}/${name})
    file(REMOVE_RECURSE ${dir})
    file(MAKE_DIRECTORY ${dir}/Images)
    foreach(image Texture BtnNormal BtnHover BtnPressed BtnDisabled)
        file(COPY_FILE ${IMAGES}/${image}.png ${dir}/Images/${image}.png)
    endforeach()

    set(classes WINDOW BUTTON STATIC)
    set(body "")
    set(block "")
    set(i 0)
    while(i LESS 1000)
        math(EXPR k "${i} % 3")
        list(GET classes ${k} class)
        math(EXPR width "40 + (${i} % 4) * 2")
        math(EXPR column "${i} % 25")
        math(EXPR id "2000 + ${i}")
        if(column EQUAL 0)
            math(EXPR y "4 + (${i} / 25) * 22")
            set(place "X=\"4\" Y=\"${y}\" Align=\"ALIGN_PARENT_RIGHT\"")
        else()
            set(place "X=\"2\" Align=\"OFFSET_PRE_LEFT|ALIGN_PRE_TOP\"")
        endif()
        if(class STREQUAL "WINDOW")
            set(text "")
        else()
            math(EXPR caption "${i} % 10")
            set(text " Text=\"TxtCap${caption}\"")
        endif()
        add_line("      <C${i} Class=\"${class}\" CommandID=\"${id}\" ${place} Width=\"${width}\" Height=\"20\"${text}/>\n")
    endwhile()
    end_lines()
    set(tree "${body}")

    set(paint "")
    set(i 0)
    while(i LESS 300)
        math(EXPR x "16 + (${i} % 20) * 62")
        math(EXPR y "16 + (${i} / 20) * 52")
        math(EXPR id "4000 + ${i}")
        string(APPEND paint "      <P${i} Class=\"BUTTON\" CommandID=\"${id}\" X=\"${x}\" Y=\"${y}\" Width=\"48\" Height=\"32\" Transparent=\"true\" Pic=\"ImgBtnNormal\" PicC=\"ImgBtnHover\" PicCD=\"ImgBtnPressed\" PicS=\"ImgBtnDisabled\"/>\n")
        math(EXPR i "${i} + 1")
    endwhile()

    set(captions "")
    foreach(c RANGE 9)
        string(APPEND captions "    <TxtCap${c} Text=\"Item ${c}\"/>\n")
    endforeach()

    file(WRITE ${dir}/Skin.xml "${HEADER}<Skin>
  <Colors>
    <ClrPanel Red=\"40\" Green=\"44\" Blue=\"52\"/>
    <ClrInk Red=\"230\" Green=\"230\" Blue=\"230\"/>
  </Colors>
  <Fonts>
    <FontBench FamilyName=\"Tahoma\" Height=\"13\"/>
  </Fonts>
  <Images>
    <ImgTexture File=\"Images/Texture.png\"/>
    <ImgBtnNormal File=\"Images/BtnNormal.png\"/>
    <ImgBtnHover File=\"Images/BtnHover.png\"/>
    <ImgBtnPressed File=\"Images/BtnPressed.png\"/>
    <ImgBtnDisabled File=\"Images/BtnDisabled.png\"/>
  </Images>
  <Text>
${captions}  </Text>
  <Windows>
    <Tree Class=\"WINDOW\" Style=\"WS_POPUP|WS_VISIBLE\" Width=\"1280\" Height=\"900\" ClBkGround=\"ClrPanel\" ClText=\"ClrInk\" Font=\"FontBench\">
${tree}    </Tree>
    <Warm Class=\"WINDOW\" Style=\"WS_POPUP|WS_VISIBLE\" Width=\"200\" Height=\"100\" ClBkGround=\"ClrPanel\" ClText=\"ClrInk\" Font=\"FontBench\">
      <W0 Class=\"WINDOW\" X=\"4\" Y=\"4\" Width=\"40\" Height=\"20\"/>
      <W1 Class=\"BUTTON\" X=\"48\" Y=\"4\" Width=\"40\" Height=\"20\" Text=\"TxtCap1\"/>
      <W2 Class=\"STATIC\" X=\"92\" Y=\"4\" Width=\"40\" Height=\"20\" Text=\"TxtCap2\"/>
    </Warm>
    <Paint Class=\"WINDOW\" Style=\"WS_POPUP|WS_VISIBLE\" Width=\"1280\" Height=\"800\" Pic=\"ImgTexture\" ClBkGround=\"ClrPanel\">
${paint}    </Paint>
  </Windows>
</Skin>
")
    zip_skin(${name} ${dir})
endfunction()

write_lookup_skin(bench_large 12000 8000 2000 500)
write_lookup_skin(bench_small 48 32 10 10)
write_window_skin(bench_windows)
