<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>AboutDialog</name>
    <message>
        <source>Program Info</source>
        <translation>프로그램 정보</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>버전 %1</translation>
    </message>
    <message>
        <source>https://www.norvane.example</source>
        <translation>https://www.norvane.example</translation>
    </message>
</context>
<context>
    <name>AiTools</name>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Updating Brindlehub (the management program of Brindle).
Please try again later.</source>
        <translation>Brindlehub(Brindle 관리 프로그램)를 업데이트하고 있습니다.
잠시 후 다시 시도해 주세요.</translation>
    </message>
    <message>
        <source>The AI features require Brindlehub (the management program of Brindle).
Would you like to install Brindlehub now?</source>
        <translation>AI 기능을 사용하려면 Brindlehub(Brindle 관리 프로그램)가 필요합니다.
지금 Brindlehub를 설치하시겠습니까?</translation>
    </message>
    <message>
        <source>An unexpected error occurred. Reinstalling the program may fix this problem. If the issue continues, please contact customer support.</source>
        <translation>예기치 않은 오류가 발생했습니다. 프로그램을 다시 설치하면 문제가 해결될 수 있습니다. 문제가 계속되면 고객 지원에 문의해 주세요.</translation>
    </message>
</context>
<context>
    <name>Application</name>
    <message>
        <source>WyvernC_EN.dll</source>
        <translation>WyvernC_KR.dll</translation>
    </message>
</context>
<context>
    <name>BannerFrame</name>
    <message>
        <source>Banner</source>
        <translation>배너</translation>
    </message>
</context>
<context>
    <name>Banners</name>
    <message>
        <source>Close banner</source>
        <translation>배너 닫기</translation>
    </message>
</context>
<context>
    <name>BasicColor</name>
    <message>
        <source>black</source>
        <translation>검정</translation>
    </message>
    <message>
        <source>gray</source>
        <translation>회색</translation>
    </message>
    <message>
        <source>red</source>
        <translation>빨강</translation>
    </message>
    <message>
        <source>orange</source>
        <translation>주황</translation>
    </message>
    <message>
        <source>yellow</source>
        <translation>노랑</translation>
    </message>
    <message>
        <source>light green</source>
        <translation>연두</translation>
    </message>
    <message>
        <source>green</source>
        <translation>초록</translation>
    </message>
    <message>
        <source>light blue</source>
        <translation>연한 파랑</translation>
    </message>
    <message>
        <source>sky blue</source>
        <translation>하늘색</translation>
    </message>
    <message>
        <source>blue</source>
        <translation>파랑</translation>
    </message>
    <message>
        <source>purple</source>
        <translation>보라</translation>
    </message>
    <message>
        <source>pink</source>
        <translation>분홍</translation>
    </message>
    <message>
        <source>white</source>
        <translation>흰색</translation>
    </message>
    <message>
        <source>fill transparent</source>
        <translation>채우기 없음</translation>
    </message>
    <message>
        <source>outline transparent</source>
        <translation>윤곽선 없음</translation>
    </message>
</context>
<context>
    <name>CoachmarkWidget</name>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
</context>
<context>
    <name>ColorPicker</name>
    <message>
        <source>Select color</source>
        <translation>색 선택</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Hexadecimal color</source>
        <translation>16진수 색상 값</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>색조</translation>
    </message>
</context>
<context>
    <name>ColorSelectPopup</name>
    <message>
        <source>More colors</source>
        <translation>다른 색 선택</translation>
    </message>
</context>
<context>
    <name>ColorSquare</name>
    <message>
        <source>Saturation and brightness</source>
        <translation>채도와 밝기</translation>
    </message>
</context>
<context>
    <name>ConfirmDeleteDialog</name>
    <message>
        <source>Would you delete image?</source>
        <translation>이미지를 삭제하시겠습니까?</translation>
    </message>
    <message>
        <source>Would you delete selected images?</source>
        <translation>선택한 이미지를 삭제하시겠습니까?</translation>
    </message>
    <message>
        <source>Would you clear history?</source>
        <translation>최근 캡처 목록을 모두 지우시겠습니까?</translation>
    </message>
    <message>
        <source>Cannot be recovered image has been deleted.</source>
        <translation>삭제한 이미지는 복구할 수 없습니다.</translation>
    </message>
    <message>
        <source>It will erase selected images.</source>
        <translation>선택한 이미지가 모두 삭제됩니다.</translation>
    </message>
    <message>
        <source>It will erase all captured images.</source>
        <translation>캡처한 이미지가 모두 삭제됩니다.</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>다시 묻지 않기</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>예(&amp;Y)</translation>
    </message>
    <message>
        <source>Discard after save</source>
        <translation>저장 후 삭제</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>아니요(&amp;N)</translation>
    </message>
</context>
<context>
    <name>ConfirmSaveDialog</name>
    <message>
        <source>Confirm Save All Images</source>
        <translation>모든 이미지 저장</translation>
    </message>
    <message>
        <source>Confirm Save Selected Images</source>
        <translation>선택한 이미지 저장</translation>
    </message>
    <message>
        <source>Save all images in history</source>
        <translation>최근 캡처 목록의 모든 이미지를 저장합니다.</translation>
    </message>
    <message>
        <source>Save selected images in history</source>
        <translation>최근 캡처 목록에서 선택한 이미지를 저장합니다.</translation>
    </message>
    <message>
        <source>When you save all, save all images to new file name</source>
        <translation>모두 저장하면 모든 이미지를 새 파일 이름으로 저장합니다.</translation>
    </message>
    <message>
        <source>When you save images, save selected images to new file name</source>
        <translation>저장하면 선택한 이미지를 새 파일 이름으로 저장합니다.</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>save path:</source>
        <translation>저장 위치:</translation>
    </message>
    <message>
        <source>When you save, save file with number at tail</source>
        <translation>저장할 때 파일 이름 끝에 번호를 붙입니다.</translation>
    </message>
    <message>
        <source>File names and format</source>
        <translation>파일 이름 및 형식</translation>
    </message>
    <message>
        <source>set file name format</source>
        <translation>파일 이름 형식 설정</translation>
    </message>
    <message>
        <source>format</source>
        <translation>형식</translation>
    </message>
    <message>
        <source>file name</source>
        <translation>파일 이름</translation>
    </message>
    <message>
        <source>quality</source>
        <translation>품질</translation>
    </message>
    <message>
        <source>save(&amp;S)</source>
        <translation>저장(&amp;S)</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>browse folder</source>
        <translation>폴더 찾아보기</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>It`s not readable or writable. Please choose another.</source>
        <translation>읽거나 쓸 수 없는 폴더입니다. 다른 폴더를 선택해 주세요.</translation>
    </message>
</context>
<context>
    <name>CropPopup</name>
    <message>
        <source>W</source>
        <translation>너비</translation>
    </message>
    <message>
        <source>H</source>
        <translation>높이</translation>
    </message>
    <message>
        <source>width</source>
        <translation>너비</translation>
    </message>
    <message>
        <source>height</source>
        <translation>높이</translation>
    </message>
    <message>
        <source>crop</source>
        <translation>자르기</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>DebugDialog</name>
    <message>
        <source>DebugDialog</source>
        <translation>디버그</translation>
    </message>
    <message>
        <source>Log level</source>
        <translation>로그 수준</translation>
    </message>
    <message>
        <source>log_level_0</source>
        <translation>log_level_0</translation>
    </message>
    <message>
        <source>log_level_1</source>
        <translation>log_level_1</translation>
    </message>
    <message>
        <source>log_level_2</source>
        <translation>log_level_2</translation>
    </message>
    <message>
        <source>log_level_max</source>
        <translation>log_level_max</translation>
    </message>
    <message>
        <source>Open log</source>
        <translation>로그 열기</translation>
    </message>
    <message>
        <source>Feature</source>
        <translation>기능</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>To file mode</source>
        <translation>파일 방식으로</translation>
    </message>
    <message>
        <source>To memory mode</source>
        <translation>메모리 방식으로</translation>
    </message>
</context>
<context>
    <name>EditorView</name>
    <message>
        <source>AI tools</source>
        <translation>AI 도구</translation>
    </message>
    <message>
        <source>Figure (&amp;S)</source>
        <translation>도형(&amp;S)</translation>
    </message>
    <message>
        <source>Pen (&amp;D)</source>
        <translation>펜(&amp;D)</translation>
    </message>
    <message>
        <source>Highlighter (&amp;H)</source>
        <translation>형광펜(&amp;H)</translation>
    </message>
    <message>
        <source>Line Width (&amp;L)</source>
        <translation>선 굵기(&amp;L)</translation>
    </message>
    <message>
        <source>Text (&amp;T)</source>
        <translation>텍스트(&amp;T)</translation>
    </message>
    <message>
        <source>Crop (&amp;C)</source>
        <translation>자르기(&amp;C)</translation>
    </message>
    <message>
        <source>Mosaic (&amp;M)</source>
        <translation>모자이크(&amp;M)</translation>
    </message>
    <message>
        <source>Eraser (&amp;E)</source>
        <translation>지우개(&amp;E)</translation>
    </message>
    <message>
        <source>Reset (&amp;R)</source>
        <translation>초기화(&amp;R)</translation>
    </message>
    <message>
        <source>Print (&amp;P)</source>
        <translation>인쇄(&amp;P)</translation>
    </message>
    <message>
        <source>Show recent captures</source>
        <translation>최근 캡처 보기</translation>
    </message>
</context>
<context>
    <name>ExitRoutine</name>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Unsaved images exist in history.
Would you exit tindra?</source>
        <translation>최근 캡처 목록에 저장하지 않은 이미지가 있습니다.
Tindra를 종료하시겠습니까?</translation>
    </message>
    <message>
        <source>If you exit, it will remove all images in history.</source>
        <translation>종료하면 최근 캡처 목록의 모든 이미지가 삭제됩니다.</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>예(&amp;Y)</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>아니요(&amp;N)</translation>
    </message>
</context>
<context>
    <name>FigurePopup</name>
    <message>
        <source>rectangle</source>
        <translation>사각형</translation>
    </message>
    <message>
        <source>circle</source>
        <translation>원</translation>
    </message>
    <message>
        <source>speech balloon</source>
        <translation>말풍선</translation>
    </message>
    <message>
        <source>line</source>
        <translation>선</translation>
    </message>
    <message>
        <source>arrow</source>
        <translation>화살표</translation>
    </message>
    <message>
        <source>dotted rectangle</source>
        <translation>점선 사각형</translation>
    </message>
    <message>
        <source>dotted circle</source>
        <translation>점선 원</translation>
    </message>
    <message>
        <source>dotted speech balloon</source>
        <translation>점선 말풍선</translation>
    </message>
    <message>
        <source>dotted line</source>
        <translation>점선</translation>
    </message>
    <message>
        <source>dotted arrow</source>
        <translation>점선 화살표</translation>
    </message>
    <message>
        <source>fill</source>
        <translation>채우기</translation>
    </message>
    <message>
        <source>outline</source>
        <translation>윤곽선</translation>
    </message>
</context>
<context>
    <name>FileDownloadDialog</name>
    <message>
        <source>Download File</source>
        <translation>파일 다운로드</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>FileNameFormatSettingDialog</name>
    <message>
        <source>write yours</source>
        <translation>직접 입력</translation>
    </message>
    <message>
        <source>FileNameFormatSettingDialog</source>
        <translation>파일 이름 형식 설정</translation>
    </message>
    <message>
        <source>save file name</source>
        <translation>저장 파일 이름</translation>
    </message>
    <message>
        <source>If you do not enter any words in the field,
file names are created sequentially starting with the number 0001.</source>
        <translation>입력란을 비워 두면
파일 이름이 0001부터 차례대로 만들어집니다.</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>FileNameUtil</name>
    <message>
        <source>name0</source>
        <translation>비둘기</translation>
    </message>
    <message>
        <source>name1</source>
        <translation>오리</translation>
    </message>
    <message>
        <source>name2</source>
        <translation>까치</translation>
    </message>
    <message>
        <source>name3</source>
        <translation>독수리</translation>
    </message>
    <message>
        <source>name4</source>
        <translation>갈매기</translation>
    </message>
    <message>
        <source>name5</source>
        <translation>메추라기</translation>
    </message>
    <message>
        <source>name6</source>
        <translation>종달새</translation>
    </message>
    <message>
        <source>name7</source>
        <translation>두루미</translation>
    </message>
    <message>
        <source>name8</source>
        <translation>제비</translation>
    </message>
    <message>
        <source>name9</source>
        <translation>까마귀</translation>
    </message>
    <message>
        <source>name10</source>
        <translation>뻐꾸기</translation>
    </message>
    <message>
        <source>name11</source>
        <translation>꿩</translation>
    </message>
    <message>
        <source>name12</source>
        <translation>닭</translation>
    </message>
    <message>
        <source>name13</source>
        <translation>고니</translation>
    </message>
    <message>
        <source>name14</source>
        <translation>기러기</translation>
    </message>
    <message>
        <source>name15</source>
        <translation>논병아리</translation>
    </message>
    <message>
        <source>name16</source>
        <translation>딱따구리</translation>
    </message>
    <message>
        <source>name17</source>
        <translation>올빼미</translation>
    </message>
    <message>
        <source>name18</source>
        <translation>부엉이</translation>
    </message>
    <message>
        <source>name19</source>
        <translation>느시</translation>
    </message>
    <message>
        <source>name20</source>
        <translation>뜸부기</translation>
    </message>
    <message>
        <source>name21</source>
        <translation>매</translation>
    </message>
    <message>
        <source>name22</source>
        <translation>솔개</translation>
    </message>
    <message>
        <source>name23</source>
        <translation>조롱이</translation>
    </message>
    <message>
        <source>name24</source>
        <translation>말똥가리</translation>
    </message>
    <message>
        <source>name25</source>
        <translation>병아리</translation>
    </message>
    <message>
        <source>name26</source>
        <translation>가마우지</translation>
    </message>
    <message>
        <source>name27</source>
        <translation>왜가리</translation>
    </message>
    <message>
        <source>name28</source>
        <translation>해오라기</translation>
    </message>
    <message>
        <source>name29</source>
        <translation>따오기</translation>
    </message>
    <message>
        <source>name30</source>
        <translation>아비</translation>
    </message>
    <message>
        <source>name31</source>
        <translation>어치</translation>
    </message>
    <message>
        <source>name32</source>
        <translation>꾀꼬리</translation>
    </message>
    <message>
        <source>name33</source>
        <translation>할미새</translation>
    </message>
    <message>
        <source>name34</source>
        <translation>직박구리</translation>
    </message>
    <message>
        <source>name35</source>
        <translation>지빠귀</translation>
    </message>
    <message>
        <source>name36</source>
        <translation>찌르레기</translation>
    </message>
    <message>
        <source>name37</source>
        <translation>동고비</translation>
    </message>
    <message>
        <source>name38</source>
        <translation>나무발발이</translation>
    </message>
    <message>
        <source>name39</source>
        <translation>곤줄박이</translation>
    </message>
    <message>
        <source>name40</source>
        <translation>오목눈이</translation>
    </message>
    <message>
        <source>name41</source>
        <translation>참새</translation>
    </message>
    <message>
        <source>name42</source>
        <translation>뱁새</translation>
    </message>
    <message>
        <source>name43</source>
        <translation>황새</translation>
    </message>
    <message>
        <source>name44</source>
        <translation>타조</translation>
    </message>
    <message>
        <source>name45</source>
        <translation>펭귄</translation>
    </message>
    <message>
        <source>name46</source>
        <translation>군함조</translation>
    </message>
    <message>
        <source>name47</source>
        <translation>앵무새</translation>
    </message>
    <message>
        <source>name48</source>
        <translation>백조</translation>
    </message>
    <message>
        <source>yyyyMMdd_HHmmss</source>
        <translation>년월일_시분초</translation>
    </message>
    <message>
        <source>yyyy-MM-dd HH;mm;ss</source>
        <translation>년-월-일 시;분;초</translation>
    </message>
    <message>
        <source>MM-dd HH;mm;ss</source>
        <translation>월-일 시;분;초</translation>
    </message>
    <message>
        <source>yyyy-MM-dd</source>
        <translation>년-월-일</translation>
    </message>
    <message>
        <source>HH;mm;ss</source>
        <translation>시;분;초</translation>
    </message>
    <message>
        <source>birdname</source>
        <translation>새이름(종달새, 참새...)</translation>
    </message>
    <message>
        <source>serial</source>
        <translation>일련번호(0001, 0002...)</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
</context>
<context>
    <name>GeneralPreferencesWidget</name>
    <message>
        <source>Normal Preferences</source>
        <translation>일반 설정</translation>
    </message>
    <message>
        <source>Show overlay when execute Tindra</source>
        <translation>Tindra를 실행할 때 오버레이 표시</translation>
    </message>
    <message>
        <source>Hide capture buttons (use mouse right button)</source>
        <translation>캡처 버튼 숨기기(마우스 오른쪽 버튼 사용)</translation>
    </message>
    <message>
        <source>Show file browser after capture</source>
        <translation>캡처 후 파일 저장 창 표시</translation>
    </message>
    <message>
        <source>Auto start when windows started</source>
        <translation>시스템을 시작할 때 자동으로 실행</translation>
    </message>
    <message>
        <source>Tray mode when clicked close</source>
        <translation>닫기를 누르면 트레이로 최소화</translation>
    </message>
    <message>
        <source>Capture Preferences</source>
        <translation>캡처 설정</translation>
    </message>
    <message>
        <source>Skip editor window</source>
        <translation>편집 창 건너뛰기</translation>
    </message>
    <message>
        <source>Copy captured image to clipboard</source>
        <translation>캡처한 이미지를 클립보드에 복사</translation>
    </message>
    <message>
        <source>Show post save window</source>
        <translation>저장 후 안내 창 표시</translation>
    </message>
    <message>
        <source>Capture include cursor (except scroll capture)</source>
        <translation>마우스 커서를 포함하여 캡처(스크롤 캡처 제외)</translation>
    </message>
    <message>
        <source>Guidline Preferences</source>
        <translation>안내선 설정</translation>
    </message>
    <message>
        <source>Guideline color:</source>
        <translation>안내선 색상:</translation>
    </message>
    <message>
        <source>Draw guideline</source>
        <translation>안내선 그리기</translation>
    </message>
    <message>
        <source>You use auto save.
If you enable &quot;Show file browser after capture&quot; option
&quot;Use auto save&quot; will be disabled.</source>
        <translation>자동 저장을 사용하고 있습니다.
&quot;캡처 후 파일 저장 창 표시&quot;를 사용하면
&quot;자동 저장 사용&quot;이 해제됩니다.</translation>
    </message>
    <message>
        <source>If you want to skip editor window
you must check &quot;Copy captured image to clipboard&quot;.</source>
        <translation>편집 창을 건너뛰려면
&quot;캡처한 이미지를 클립보드에 복사&quot;를 선택해야 합니다.</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>black</source>
        <translation>검정</translation>
    </message>
    <message>
        <source>Maroon</source>
        <translation>밤색</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>초록</translation>
    </message>
    <message>
        <source>Olive</source>
        <translation>올리브색</translation>
    </message>
    <message>
        <source>Navy</source>
        <translation>남색</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>보라</translation>
    </message>
    <message>
        <source>Teal</source>
        <translation>청록</translation>
    </message>
    <message>
        <source>Gray</source>
        <translation>회색</translation>
    </message>
    <message>
        <source>Silver</source>
        <translation>은색</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>빨강</translation>
    </message>
    <message>
        <source>Lime</source>
        <translation>라임색</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>노랑</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>파랑</translation>
    </message>
    <message>
        <source>Magenta</source>
        <translation>자홍</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>하늘색</translation>
    </message>
    <message>
        <source>White</source>
        <translation>흰색</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>Help (&amp;H)</source>
        <translation>도움말(&amp;H)</translation>
    </message>
    <message>
        <source>Read me (&amp;R)</source>
        <translation>읽어 보기(&amp;R)</translation>
    </message>
    <message>
        <source>FAQ (&amp;F)</source>
        <translation>자주 묻는 질문(&amp;F)</translation>
    </message>
    <message>
        <source>Customer services (&amp;S)</source>
        <translation>고객 지원(&amp;S)</translation>
    </message>
    <message>
        <source>Brindle Page (&amp;A)</source>
        <translation>Brindle 홈페이지(&amp;A)</translation>
    </message>
    <message>
        <source>Norvane Page (&amp;E)</source>
        <translation>Norvane 홈페이지(&amp;E)</translation>
    </message>
    <message>
        <source>About (&amp;I)</source>
        <translation>프로그램 정보(&amp;I)</translation>
    </message>
</context>
<context>
    <name>HistoryButton</name>
    <message>
        <source>Delete</source>
        <translation>삭제</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>선택</translation>
    </message>
    <message>
        <source>Pin</source>
        <translation>고정</translation>
    </message>
</context>
<context>
    <name>HistoryButtonWidget</name>
    <message>
        <source>Save</source>
        <translation>저장</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>삭제</translation>
    </message>
    <message>
        <source>OpenSavedFolder(&amp;O)</source>
        <translation>저장된 폴더 열기(&amp;O)</translation>
    </message>
    <message>
        <source>OpenSavedImage(&amp;V)</source>
        <translation>저장된 이미지 열기(&amp;V)</translation>
    </message>
    <message>
        <source>Save selected images</source>
        <translation>선택한 이미지 저장</translation>
    </message>
    <message>
        <source>Save all images</source>
        <translation>모든 이미지 저장</translation>
    </message>
    <message>
        <source>Delete seleted images</source>
        <translation>선택한 이미지 삭제</translation>
    </message>
    <message>
        <source>Delete all images</source>
        <translation>모든 이미지 삭제</translation>
    </message>
    <message>
        <source>Print selected images</source>
        <translation>선택한 이미지 인쇄</translation>
    </message>
    <message>
        <source>Print image</source>
        <translation>이미지 인쇄</translation>
    </message>
    <message>
        <source>Capture, %0 by %1 pixels</source>
        <translation>캡처, %0 × %1 픽셀</translation>
    </message>
</context>
<context>
    <name>HistoryListWidget</name>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Up to %0 images can be fixed.</source>
        <translation>이미지는 최대 %0개까지 고정할 수 있습니다.</translation>
    </message>
</context>
<context>
    <name>HistoryPreferencesWidget</name>
    <message>
        <source>History Preferences</source>
        <translation>최근 캡처 설정</translation>
    </message>
    <message>
        <source>Ask before delete all images</source>
        <translation>모든 이미지를 삭제하기 전에 확인</translation>
    </message>
    <message>
        <source>Show message after save all images</source>
        <translation>모든 이미지를 저장한 후 안내 표시</translation>
    </message>
    <message>
        <source>Ask before delete image</source>
        <translation>이미지를 삭제하기 전에 확인</translation>
    </message>
    <message>
        <source>Auto cleanup history</source>
        <translation>최근 캡처 목록 자동 정리</translation>
    </message>
</context>
<context>
    <name>HistoryWidget</name>
    <message>
        <source>history</source>
        <translation>최근 캡처</translation>
    </message>
    <message>
        <source>select</source>
        <translation>선택</translation>
    </message>
    <message>
        <source>[%0 selected]</source>
        <translation>[%0개 선택]</translation>
    </message>
    <message>
        <source>[%0/%1]</source>
        <translation>[%0/%1]</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>cancel select mode</source>
        <translation>선택 모드 취소</translation>
    </message>
    <message>
        <source>choose images</source>
        <translation>이미지 선택</translation>
    </message>
    <message>
        <source>save selected images</source>
        <translation>선택 저장</translation>
    </message>
    <message>
        <source>save images</source>
        <translation>모두 저장</translation>
    </message>
    <message>
        <source>save selected images in history</source>
        <translation>최근 캡처 목록에서 선택한 이미지 저장</translation>
    </message>
    <message>
        <source>save all images in history</source>
        <translation>최근 캡처 목록의 모든 이미지 저장</translation>
    </message>
    <message>
        <source>delete selected images</source>
        <translation>선택 삭제</translation>
    </message>
    <message>
        <source>delete images</source>
        <translation>모두 삭제</translation>
    </message>
    <message>
        <source>delete selected imagesin history</source>
        <translation>최근 캡처 목록에서 선택한 이미지 삭제</translation>
    </message>
    <message>
        <source>delete all images in history</source>
        <translation>최근 캡처 목록의 모든 이미지 삭제</translation>
    </message>
    <message>
        <source>png file (*.png);;jpg file (*.jpg);;bmp file (*.bmp);;gif file (*.gif);;webp file (*.webp)</source>
        <translation>PNG 파일 (*.png);;JPG 파일 (*.jpg);;BMP 파일 (*.bmp);;GIF 파일 (*.gif);;WEBP 파일 (*.webp)</translation>
    </message>
    <message>
        <source>failed to save images.</source>
        <translation>이미지를 저장하지 못했습니다.</translation>
    </message>
    <message>
        <source>failed to save images.
please change save folder.</source>
        <translation>이미지를 저장하지 못했습니다.
저장 폴더를 변경해 주세요.</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>failed to save image.</source>
        <translation>이미지를 저장하지 못했습니다.</translation>
    </message>
    <message>
        <source>failed to access save file.</source>
        <translation>저장할 파일에 접근할 수 없습니다.</translation>
    </message>
    <message>
        <source>Hide recent captures</source>
        <translation>최근 캡처 숨기기</translation>
    </message>
</context>
<context>
    <name>ImagePreferencesWidget</name>
    <message>
        <source>Capture Save Preferences</source>
        <translation>캡처 저장 설정</translation>
    </message>
    <message>
        <source>format</source>
        <translation>형식</translation>
    </message>
    <message>
        <source>quality</source>
        <translation>품질</translation>
    </message>
    <message>
        <source>set file name format</source>
        <translation>파일 이름 형식 설정</translation>
    </message>
    <message>
        <source>file name</source>
        <translation>파일 이름</translation>
    </message>
    <message>
        <source>Auto Save Preferences</source>
        <translation>자동 저장 설정</translation>
    </message>
    <message>
        <source>Use auto save</source>
        <translation>자동 저장 사용</translation>
    </message>
    <message>
        <source>Save path</source>
        <translation>저장 위치</translation>
    </message>
    <message>
        <source>Sizing Capture Preset Settings</source>
        <translation>크기 지정 캡처 사전 설정</translation>
    </message>
    <message>
        <source>You can pre-register sizing capture sizes that you will use frequently. (up to 6)</source>
        <translation>자주 사용하는 캡처 크기를 미리 등록할 수 있습니다. (최대 6개)</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>추가</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>삭제</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>편집</translation>
    </message>
    <message>
        <source>Edit Tool Preferences</source>
        <translation>편집 도구 설정</translation>
    </message>
    <message>
        <source>Edit tool</source>
        <translation>편집 도구</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>If you enable &quot;Use auto save&quot; option
&quot;Show file browser after capture&quot; will be disabled.</source>
        <translation>&quot;자동 저장 사용&quot;을 선택하면
&quot;캡처 후 파일 저장 창 표시&quot;가 해제됩니다.</translation>
    </message>
    <message>
        <source>browse folder</source>
        <translation>폴더 찾아보기</translation>
    </message>
    <message>
        <source>It`s not readable or writable. Please choose another.</source>
        <translation>읽거나 쓸 수 없는 폴더입니다. 다른 폴더를 선택해 주세요.</translation>
    </message>
    <message>
        <source>execute file (*.exe);;batch file (*.bat)</source>
        <translation>실행 파일 (*.exe);;배치 파일 (*.bat)</translation>
    </message>
    <message>
        <source>all files (*)</source>
        <translation>모든 파일 (*)</translation>
    </message>
</context>
<context>
    <name>ImageToolWidget</name>
    <message>
        <source>Image size and zoom</source>
        <translation>이미지 크기와 배율</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>축소</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>확대</translation>
    </message>
    <message>
        <source>Original size</source>
        <translation>원래 크기</translation>
    </message>
</context>
<context>
    <name>ManagementProgramOffer</name>
    <message>
        <source>Brindlehub (the management program of Brindle) is not installed.
Would you like to install it now?</source>
        <translation>Brindlehub(Brindle 관리 프로그램)가 설치되어 있지 않습니다.
지금 설치하시겠습니까?</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>https://www.brindle.example/download</source>
        <translation>https://www.brindle.example/download</translation>
    </message>
</context>
<context>
    <name>MessageDialog</name>
    <message>
        <source>Ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Yes(&amp;Y)</source>
        <translation>예(&amp;Y)</translation>
    </message>
    <message>
        <source>No(&amp;N)</source>
        <translation>아니요(&amp;N)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
</context>
<context>
    <name>MosaicPopup</name>
    <message>
        <source>weak</source>
        <translation>약하게</translation>
    </message>
    <message>
        <source>medium</source>
        <translation>보통</translation>
    </message>
    <message>
        <source>strong</source>
        <translation>강하게</translation>
    </message>
    <message>
        <source>original</source>
        <translation>원본</translation>
    </message>
</context>
<context>
    <name>OverflowMenu</name>
    <message>
        <source>Online update (&amp;U)</source>
        <translation>온라인 업데이트(&amp;U)</translation>
    </message>
    <message>
        <source>Close (&amp;X)</source>
        <translation>종료(&amp;X)</translation>
    </message>
    <message>
        <source>Preferences (&amp;O)</source>
        <translation>환경 설정(&amp;O)</translation>
    </message>
    <message>
        <source>Print (&amp;P)</source>
        <translation>인쇄(&amp;P)</translation>
    </message>
</context>
<context>
    <name>PostSaveDialog</name>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Saved captured image.</source>
        <translation>캡처한 이미지를 저장했습니다.</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>다시 표시하지 않기</translation>
    </message>
    <message>
        <source>Open Image(&amp;V)</source>
        <translation>이미지 열기(&amp;V)</translation>
    </message>
    <message>
        <source>Open Folder(&amp;O)</source>
        <translation>폴더 열기(&amp;O)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>Saved captured %0 images.</source>
        <translation>캡처한 이미지 %0개를 저장했습니다.</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>환경 설정</translation>
    </message>
    <message>
        <source>General</source>
        <translation>일반</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>캡처</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>단축키</translation>
    </message>
    <message>
        <source>History</source>
        <translation>최근 캡처</translation>
    </message>
    <message>
        <source>default</source>
        <translation>기본값</translation>
    </message>
    <message>
        <source>set default this page</source>
        <translation>현재 페이지를 기본값으로</translation>
    </message>
    <message>
        <source>set default all pages</source>
        <translation>모든 페이지를 기본값으로</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Set this page to default.
Would you like to continue?</source>
        <translation>현재 페이지를 기본값으로 되돌립니다.
계속하시겠습니까?</translation>
    </message>
    <message>
        <source>Set all pages to default.
Would you like to continue?</source>
        <translation>모든 페이지를 기본값으로 되돌립니다.
계속하시겠습니까?</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
</context>
<context>
    <name>PrintPreviewDialog</name>
    <message>
        <source>%0/%1 Pages</source>
        <translation>%0/%1 페이지</translation>
    </message>
    <message>
        <source>Print Preview</source>
        <translation>인쇄 미리 보기</translation>
    </message>
    <message>
        <source>Printer settings</source>
        <translation>프린터 설정</translation>
    </message>
    <message>
        <source>sheet(s)</source>
        <translation>장</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>프린터</translation>
    </message>
    <message>
        <source>Page Size</source>
        <translation>용지 크기</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>인쇄 매수</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>용지 방향</translation>
    </message>
    <message>
        <source>Portrait</source>
        <translation>세로</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>가로</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>배율</translation>
    </message>
    <message>
        <source>Fit to printable area</source>
        <translation>인쇄 영역에 맞춤</translation>
    </message>
    <message>
        <source>Actual size</source>
        <translation>실제 크기</translation>
    </message>
    <message>
        <source>Custom scale</source>
        <translation>사용자 지정 배율</translation>
    </message>
    <message>
        <source>Value (%)</source>
        <translation>값(%)</translation>
    </message>
    <message>
        <source>Center Alignment</source>
        <translation>가운데 맞춤</translation>
    </message>
    <message>
        <source>Horizontal</source>
        <translation>가로</translation>
    </message>
    <message>
        <source>Vertical</source>
        <translation>세로</translation>
    </message>
    <message>
        <source>Margins (mm)</source>
        <translation>여백(mm)</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>왼쪽</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>위쪽</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>오른쪽</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>아래쪽</translation>
    </message>
    <message>
        <source>More</source>
        <translation>기타</translation>
    </message>
    <message>
        <source>Print grayscale</source>
        <translation>회색조로 인쇄</translation>
    </message>
    <message>
        <source>Print border</source>
        <translation>테두리 인쇄</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>이전 페이지</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>다음 페이지</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>인쇄</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>PrinterPaper</name>
    <message>
        <source>%0 (Borderless)</source>
        <translation>%0(여백 없음)</translation>
    </message>
</context>
<context>
    <name>PrinterPropertiesDialog</name>
    <message>
        <source>Printer settings</source>
        <translation>프린터 설정</translation>
    </message>
    <message>
        <source>Page Size</source>
        <translation>용지 크기</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>컬러</translation>
    </message>
    <message>
        <source>Two-sided printing</source>
        <translation>양면 인쇄</translation>
    </message>
    <message>
        <source>Print quality</source>
        <translation>인쇄 품질</translation>
    </message>
    <message>
        <source>Black and white</source>
        <translation>흑백</translation>
    </message>
    <message>
        <source>Flip on long edge</source>
        <translation>긴 쪽으로 넘김</translation>
    </message>
    <message>
        <source>Flip on short edge</source>
        <translation>짧은 쪽으로 넘김</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>사용 안 함</translation>
    </message>
    <message>
        <source>Draft</source>
        <translation>초안</translation>
    </message>
    <message>
        <source>High</source>
        <translation>고급</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>보통</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>ProgramInformation</name>
    <message>
        <source>Usage: tindra-editor [COMMAND ...]

The image editor of Norvane&apos;s screen capture. One editor runs per user: a
further start hands its commands to the first and ends. Without a command it
waits in the background.

  /path FILE      add a picture; the file becomes the editor&apos;s, who deletes it
  /point X Y      with /path: position of the picture on the screen
  /memory SIZE    with /path: the picture is in shared memory, so many bytes
  /skip           with /path: do not show the window
                  with /autosave: do not tell the result
  /show           show the window
  /hide           hide the window
  /save           save the current picture
  /autosave       save the current picture without asking for a name
  /preference PAGE
                  open the preferences on this page, 0 to 3
  /updateprefvalue ID VALUE
                  switch a preference on (1) or off (0)
  /about          show what program this is
  /close          end the editor, asking about pictures that are not saved
  /kill           end it at once; the next start brings the pictures back

  --help          alone: show this text
  --version       alone: show the version

tindra-send --open FILE opens a copy of a picture and leaves the file alone.
</source>
        <translation>사용법: tindra-editor [명령 ...]

Norvane 화면 캡처의 이미지 편집기입니다. 사용자마다 하나만 실행되며,
이미 실행 중이면 명령을 그 편집기에 넘기고 끝납니다.
명령이 없으면 배경에서 기다립니다.

  /path FILE      이미지를 추가합니다. 파일은 편집기의 것이 되어 삭제됩니다.
  /point X Y      /path와 함께: 화면에서 이미지의 위치
  /memory SIZE    /path와 함께: 공유 메모리에 있는 이미지의 바이트 수
  /skip           /path와 함께: 창을 표시하지 않습니다.
                  자동 저장(/autosave)과 함께: 결과를 알리지 않습니다.
  /show           창을 표시합니다.
  /hide           창을 숨깁니다.
  /save           현재 이미지를 저장합니다.
  /autosave       이름을 묻지 않고 현재 이미지를 저장합니다.
  /preference PAGE
                  환경 설정을 이 페이지(0~3)에서 엽니다.
  /updateprefvalue ID VALUE
                  환경 설정 하나를 켜거나(1) 끕니다(0).
  /about          프로그램 정보를 표시합니다.
  /close          저장하지 않은 이미지를 확인하고 편집기를 끝냅니다.
  /kill           바로 끝냅니다. 다음에 실행하면 이미지가 복구됩니다.

  --help          단독으로 사용: 이 도움말을 표시합니다.
  --version       단독으로 사용: 버전을 표시합니다.

tindra-send --open FILE은 파일을 그대로 두고 그 사본을 엽니다.
</translation>
    </message>
</context>
<context>
    <name>RestoredCaptures</name>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Temporarily saved recent capture list has been restored.</source>
        <translation>임시로 저장된 최근 캡처 목록을 복원했습니다.</translation>
    </message>
    <message>
        <source>Part of the recent capture list is restored when Tindra is updated or abnormally terminated.
		Please save important captured images safely in advance.</source>
        <translation>Tindra가 업데이트되거나 비정상적으로 종료되면 최근 캡처 목록의 일부가 복원됩니다.
		중요한 캡처 이미지는 미리 안전하게 저장해 주세요.</translation>
    </message>
</context>
<context>
    <name>SaveFileDialog</name>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>&quot;%1&quot; exists already.
Would you replace it?</source>
        <translation>&quot;%1&quot; 파일이 이미 있습니다.
바꾸시겠습니까?</translation>
    </message>
</context>
<context>
    <name>ShortcutPreferencesWidget</name>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Win</source>
        <translation>Win</translation>
    </message>
    <message>
        <source>Region</source>
        <translation>영역</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>창</translation>
    </message>
    <message>
        <source>ChildWnd</source>
        <translation>창 안의 영역</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>전체 화면</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>스크롤</translation>
    </message>
    <message>
        <source>FixedRegion</source>
        <translation>고정 영역</translation>
    </message>
    <message>
        <source>Print Screen Key Preferences</source>
        <translation>Print Screen 키 설정</translation>
    </message>
    <message>
        <source>Use Print Screen key as</source>
        <translation>Print Screen 키를</translation>
    </message>
    <message>
        <source>Region Capture</source>
        <translation>영역 캡처</translation>
    </message>
    <message>
        <source>Window Capture</source>
        <translation>창 캡처</translation>
    </message>
    <message>
        <source>Child Window Capture</source>
        <translation>창 안의 영역 캡처</translation>
    </message>
    <message>
        <source>Fullscreen Capture</source>
        <translation>전체 화면 캡처</translation>
    </message>
    <message>
        <source>Scroll Capture</source>
        <translation>스크롤 캡처</translation>
    </message>
    <message>
        <source>Fixed Region Capture</source>
        <translation>고정 영역 캡처</translation>
    </message>
    <message>
        <source>mode</source>
        <translation>모드로 사용</translation>
    </message>
    <message>
        <source>Cpature Shortcut Preferences</source>
        <translation>캡처 단축키 설정</translation>
    </message>
    <message>
        <source>You can set or off shortcut per each capture mode.</source>
        <translation>캡처 모드별로 단축키를 설정하거나 해제할 수 있습니다.</translation>
    </message>
</context>
<context>
    <name>SizeInputDialog</name>
    <message>
        <source>Add fixed preset</source>
        <translation>캡처 크기 추가</translation>
    </message>
    <message>
        <source>Edit fixed preset</source>
        <translation>캡처 크기 편집</translation>
    </message>
    <message>
        <source>W</source>
        <translation>너비</translation>
    </message>
    <message>
        <source>H</source>
        <translation>높이</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>This size has already been added.</source>
        <translation>이미 추가된 크기입니다.</translation>
    </message>
</context>
<context>
    <name>TextPopup</name>
    <message>
        <source>bold</source>
        <translation>굵게</translation>
    </message>
    <message>
        <source>italic</source>
        <translation>기울임꼴</translation>
    </message>
    <message>
        <source>underline</source>
        <translation>밑줄</translation>
    </message>
    <message>
        <source>font size</source>
        <translation>글꼴 크기</translation>
    </message>
    <message>
        <source>font color</source>
        <translation>글꼴 색</translation>
    </message>
    <message>
        <source>font size (F6)</source>
        <translation>글꼴 크기 (F6)</translation>
    </message>
</context>
<context>
    <name>TindraEditor</name>
    <message>
        <source>TindraEditor</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>toolBar</source>
        <translation>도구 모음</translation>
    </message>
    <message>
        <source>Tindra</source>
        <translation>Tindra</translation>
    </message>
    <message>
        <source>Failed to capture image.</source>
        <translation>이미지를 캡처하지 못했습니다.</translation>
    </message>
    <message>
        <source>https://www.norvane.example/tindra/help</source>
        <translation>https://www.norvane.example/tindra/help</translation>
    </message>
    <message>
        <source>https://www.norvane.example/tindra/faq</source>
        <translation>https://www.norvane.example/tindra/faq</translation>
    </message>
    <message>
        <source>https://www.norvane.example/support</source>
        <translation>https://www.norvane.example/support</translation>
    </message>
    <message>
        <source>https://www.brindle.example</source>
        <translation>https://www.brindle.example</translation>
    </message>
    <message>
        <source>https://www.norvane.example</source>
        <translation>https://www.norvane.example</translation>
    </message>
</context>
<context>
    <name>Toolbar</name>
    <message>
        <source>capture</source>
        <translation>캡처</translation>
    </message>
    <message>
        <source>Run new capture (Ctrl + N)</source>
        <translation>새로 캡처합니다. (Ctrl + N)</translation>
    </message>
    <message>
        <source>save</source>
        <translation>저장</translation>
    </message>
    <message>
        <source>Save current image (Ctrl + S)</source>
        <translation>현재 이미지를 저장합니다. (Ctrl + S)</translation>
    </message>
    <message>
        <source>copy</source>
        <translation>복사</translation>
    </message>
    <message>
        <source>Copy current image (Ctrl + C)</source>
        <translation>현재 이미지를 복사합니다. (Ctrl + C)</translation>
    </message>
    <message>
        <source>undo</source>
        <translation>실행 취소</translation>
    </message>
    <message>
        <source>Undo last work (Ctrl + Z)</source>
        <translation>마지막 작업을 취소합니다. (Ctrl + Z)</translation>
    </message>
    <message>
        <source>redo</source>
        <translation>다시 실행</translation>
    </message>
    <message>
        <source>Redo last work (Ctrl + Y)</source>
        <translation>취소한 작업을 다시 실행합니다. (Ctrl + Y)</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>초기화</translation>
    </message>
    <message>
        <source>Reset all works</source>
        <translation>모든 작업을 초기화합니다.</translation>
    </message>
    <message>
        <source>figure</source>
        <translation>도형</translation>
    </message>
    <message>
        <source>Draw figure on current image</source>
        <translation>현재 이미지에 도형을 그립니다.</translation>
    </message>
    <message>
        <source>pen</source>
        <translation>펜</translation>
    </message>
    <message>
        <source>Draw pen on current image</source>
        <translation>현재 이미지에 펜으로 그립니다.</translation>
    </message>
    <message>
        <source>highlighter</source>
        <translation>형광펜</translation>
    </message>
    <message>
        <source>Draw highlighter on current image</source>
        <translation>현재 이미지에 형광펜으로 그립니다.</translation>
    </message>
    <message>
        <source>line</source>
        <translation>선 굵기</translation>
    </message>
    <message>
        <source>Set line width for figure, pen, highlighter</source>
        <translation>도형, 펜, 형광펜의 선 굵기를 설정합니다.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>텍스트</translation>
    </message>
    <message>
        <source>Add text on current image</source>
        <translation>현재 이미지에 텍스트를 추가합니다.</translation>
    </message>
    <message>
        <source>crop</source>
        <translation>자르기</translation>
    </message>
    <message>
        <source>Crop current image</source>
        <translation>현재 이미지를 자릅니다.</translation>
    </message>
    <message>
        <source>mosaic</source>
        <translation>모자이크</translation>
    </message>
    <message>
        <source>Add mosaic region of current image</source>
        <translation>현재 이미지에 모자이크 영역을 추가합니다.</translation>
    </message>
    <message>
        <source>eraser</source>
        <translation>지우개</translation>
    </message>
    <message>
        <source>Erase drawn object</source>
        <translation>그린 개체를 지웁니다.</translation>
    </message>
    <message>
        <source>help</source>
        <translation>도움말</translation>
    </message>
    <message>
        <source>Click to show help, about, etc.</source>
        <translation>도움말, 프로그램 정보 등을 봅니다.</translation>
    </message>
    <message>
        <source>menu</source>
        <translation>메뉴</translation>
    </message>
    <message>
        <source>Click to show features, save, print, preferences, etc.</source>
        <translation>기능, 저장, 인쇄, 환경 설정 등을 봅니다.</translation>
    </message>
    <message>
        <source>Options: %0</source>
        <translation>%0 옵션</translation>
    </message>
    <message>
        <source>Enhance images beautifully with AI features!</source>
        <translation>AI 기능으로 이미지를 아름답게 다듬어 보세요!</translation>
    </message>
    <message>
        <source>AI tools</source>
        <translation>AI 도구</translation>
    </message>
</context>
<context>
    <name>UnopenedFiles</name>
    <message>
        <source>These files cannot be opened.
Please check that they are images and can be read.</source>
        <translation>다음 파일을 열 수 없습니다.
이미지 파일인지, 읽을 수 있는 파일인지 확인하십시오.</translation>
    </message>
    <message>
        <source>and %0 more</source>
        <translation>외 %0개</translation>
    </message>
</context>
</TS>
