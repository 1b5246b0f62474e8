<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hant" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>Next</source>
        <extracomment>Go to the next step</extracomment>
        <translation>下一步</translation>
    </message>
    <message>
        <source>Finish</source>
        <extracomment>Completed the steps</extracomment>
        <translation>完成</translation>
    </message>
    <message>
        <source>Thanks!</source>
        <extracomment>Thank you for taking the survey</extracomment>
        <translation>謝謝！</translation>
    </message>
    <message>
        <source>I think that...</source>
        <extracomment>Unfinished thought on what I think</extracomment>
        <translation>我認為……</translation>
    </message>
    <message>
        <source>Close</source>
        <extracomment>Put the survey away</extracomment>
        <translation>關閉</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>Which one of how many: question 2 of 5</extracomment>
        <translation>第 %1 項，共 %2 項</translation>
    </message>
</context>
</TS>
