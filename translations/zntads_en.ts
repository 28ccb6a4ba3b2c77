<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh">
<context>
    <name>ZNTAds</name>
    <message>
        <source>关闭广告</source>
        <translation>Close ad</translation>
    </message>
    <message>
        <source>广告标题文本</source>
        <translation>Ad title</translation>
    </message>
    <message>
        <source>查看详情</source>
        <translation>Learn more</translation>
    </message>
    <message>
        <source>广告标题</source>
        <translation>Ad title</translation>
    </message>
    <message>
        <source>广告</source>
        <translation>Ad</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>摇一摇或点击图标
跳转详情页或第三方应用</source>
        <translation>Shake or tap the icon
to open the page or another app</translation>
    </message>
    <message>
        <source>滑动屏幕或点击图标</source>
        <translation>Slide or tap the icon</translation>
    </message>
    <message>
        <source>跳转详情页或第三方应用</source>
        <translation>to open the page or another app</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>点击跳转详情页或第三方应用</source>
        <translation>Tap to open the page or another app</translation>
    </message>
    <message>
        <source>广告内容</source>
        <translation>Advertisement</translation>
    </message>
    <message>
        <source>%1s</source>
        <translation>%1s</translation>
    </message>
    <message>
        <source>点击查看详情</source>
        <translation>Tap to learn more</translation>
    </message>
</context>
</TS>
