-- Keeping the ledger

update t_SerialNumList set FCanDeleteFlag = 1 where FBillID=7
  > UPDATE main."t_SerialNumList" AS s1
    SET "FCanDeleteFlag"=?1
    WHERE (s1."FBillID" = ?2)

select FID from t_SerialNumList where FItemID=101 and FSerialNo='A001'  and FBillID=7
  > SELECT s1."FID"
    FROM main."t_SerialNumList" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FSerialNo" = ?2)
    AND (s1."FBillID" = ?3))

update t_SerialNumList set FBillIndexID = 2,FStockID = 3,FAuxPropID = 0,FNote ='y',FClassTypeID = 1040001,FStatus = 1, FCanDeleteFlag = 0 where FID=1
  > UPDATE main."t_SerialNumList" AS s1
    SET "FBillIndexID"=?1,"FStockID"=?2,"FAuxPropID"=?3,"FNote"=?4,"FClassTypeID"=?5,"FStatus"=?6,"FCanDeleteFlag"=?7
    WHERE (s1."FID" = ?8)

delete from t_SerialNumList where FCanDeleteFlag = 1 and FBillID=7
  > DELETE
    FROM main."t_SerialNumList" AS s1
    WHERE ((s1."FCanDeleteFlag" = ?1)
    AND (s1."FBillID" = ?2))

select FID,FBillIndexID,FStockID,FNote,FCanDeleteFlag from t_SerialNumList
  > SELECT s1."FID",s1."FBillIndexID",s1."FStockID",s1."FNote",s1."FCanDeleteFlag"
    FROM main."t_SerialNumList" AS s1

select max(FID) from t_SerialNumList
  > SELECT max(s1."FID")
    FROM main."t_SerialNumList" AS s1

-- Transfers

select FID from t_SerialNumList where FItemID=101 and FSerialNo='A001'  and FBillID=7 and FStockID=1 and FAuxPropID=0
  > SELECT s1."FID"
    FROM main."t_SerialNumList" AS s1
    WHERE ((s1."FItemID" = ?1)
    AND (s1."FSerialNo" = ?2)
    AND (s1."FBillID" = ?3)
    AND (s1."FStockID" = ?4)
    AND (s1."FAuxPropID" = ?5))

select FStockID,FNote,FStatus from t_SerialNumList
  > SELECT s1."FStockID",s1."FNote",s1."FStatus"
    FROM main."t_SerialNumList" AS s1

-- Numbers recorded again

select 1 from t_serialnumlist a inner join (select max(fid) as fid,fitemid,fserialno from t_serialnumlist where fbillid=7 group by fitemid,fserialno) b on a.fitemid=b.fitemid and a.fserialno=b.fserialno where a.fid>b.fid and fbillid>0 
  > SELECT ?1
    FROM main."t_SerialNumList" AS s1
    JOIN (SELECT max(s2."FID") AS c0,s2."FItemID" AS c1,s2."FSerialNo" AS c2
    FROM main."t_SerialNumList" AS s2
    WHERE (s2."FBillID" = ?2)
    GROUP BY s2."FItemID",s2."FSerialNo") AS s3
    ON ((s1."FItemID" = s3.c1)
    AND (s1."FSerialNo" = s3.c2))
    WHERE ((s1."FID" > s3.c0)
    AND (s1."FBillID" > ?3))

